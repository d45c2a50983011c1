# The translations of the texts, which the library carries as a resource of its own. The target
# update_translations brings the files up to date with the texts in the sources.
#   refframe_translations(<target>)
function(refframe_translations target)
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/translations/refframe_*.ts)
  set(folder ${PROJECT_BINARY_DIR}/translations)
  file(MAKE_DIRECTORY ${folder})
  set(compiled)
  set(entries)
  foreach(source IN LISTS sources)
    get_filename_component(name ${source} NAME_WE)
    add_custom_command(
      OUTPUT ${folder}/${name}.qm
      COMMAND Qt6::lrelease -silent -nounfinished ${source} -qm ${folder}/${name}.qm
      DEPENDS ${source})
    list(APPEND compiled ${folder}/${name}.qm)
    string(APPEND entries "<file>${name}.qm</file>")
  endforeach()
  # The name is part of a symbol, and other libraries of a host have resources too.
  set(resource refframe_translations)
  file(CONFIGURE OUTPUT ${folder}/${resource}.qrc CONTENT
       "<RCC><qresource prefix=\"/refframe/translations\">${entries}</qresource></RCC>\n")
  add_custom_command(
    OUTPUT ${folder}/${resource}.cpp
    COMMAND Qt6::rcc --name ${resource} --output ${folder}/${resource}.cpp
            ${folder}/${resource}.qrc
    DEPENDS ${compiled} ${folder}/${resource}.qrc)
  target_sources(${target} PRIVATE ${folder}/${resource}.cpp)
endfunction()

find_package(Python3 COMPONENTS Interpreter)
if(Python3_FOUND)
  set(update_translations ${Python3_EXECUTABLE} -B
                          ${PROJECT_SOURCE_DIR}/translations/update_translations.py
                          ${PROJECT_SOURCE_DIR})
  add_custom_target(update_translations COMMAND ${update_translations} VERBATIM)
endif()
