# The manual page and the completions of shells, from what the program prints for --help. Only a
# program that can be run here can be asked.
if(NOT CMAKE_CROSSCOMPILING)
  set(help ${PROJECT_BINARY_DIR}/help)
  file(GLOB writers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/clidoc/*.py)
  add_custom_command(
    OUTPUT ${help}/sabxml.1 ${help}/sabxml.1.gz ${help}/sabxml.bash ${help}/sabxml.fish ${help}/_sabxml
    COMMAND Python3::Interpreter ${PROJECT_SOURCE_DIR}/tools/clidoc.py $<TARGET_FILE:sabxml> ${help}
    COMMAND gzip -9nkf ${help}/sabxml.1
    DEPENDS sabxml ${writers} ${PROJECT_SOURCE_DIR}/tools/clidoc.py
    COMMENT "Writing the manual page and the completions of sabxml"
    VERBATIM)
  add_custom_target(sab_command_line_help ALL DEPENDS ${help}/sabxml.1)
endif()
