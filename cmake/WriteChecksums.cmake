# Run by cpack over the folder that becomes the archive: the digests of all files in it, so that what
# has been unpacked can be checked with sha256sum -c.
set(folder ${CPACK_TEMPORARY_INSTALL_DIRECTORY})
file(GLOB_RECURSE files LIST_DIRECTORIES false RELATIVE ${folder} ${folder}/*)
list(REMOVE_ITEM files SHA256SUMS)
set(lines "")
foreach(file ${files})
  file(SHA256 ${folder}/${file} digest)
  string(APPEND lines "${digest}  ${file}\n")
endforeach()
file(WRITE ${folder}/SHA256SUMS "${lines}")
