# The Python client's wheel, and what it holds, for the packages.
set(client ${PROJECT_SOURCE_DIR}/clients/python)
set(SAB_PYTHON_WHEEL ${PROJECT_BINARY_DIR}/python/sabxml-${PROJECT_VERSION}-py3-none-any.whl)
file(STRINGS ${client}/sabxml/__init__.py version REGEX "^__version__")
if(NOT version STREQUAL "__version__ = \"${PROJECT_VERSION}\"")
  message(FATAL_ERROR "clients/python/sabxml/__init__.py has ${version}: "
    "make it ${PROJECT_VERSION}, the version of the project")
endif()

file(GLOB sources CONFIGURE_DEPENDS ${client}/*.* ${client}/sabxml/*.py*)
add_custom_command(
  OUTPUT ${SAB_PYTHON_WHEEL}
  COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/python
  COMMAND Python3::Interpreter ${client}/build_backend.py ${PROJECT_BINARY_DIR}/python
  COMMAND ${CMAKE_COMMAND} -E chdir ${PROJECT_BINARY_DIR}/python
          ${CMAKE_COMMAND} -E tar xf ${SAB_PYTHON_WHEEL}
  DEPENDS ${sources} ${PROJECT_BINARY_DIR}/idl/generated.stamp
  COMMENT "Making the wheel of the Python client"
  VERBATIM)
add_custom_target(sab_python ALL DEPENDS ${SAB_PYTHON_WHEEL})
