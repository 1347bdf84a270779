# What "cmake --install" puts where, in two components: the tools, which need no graphical toolkit,
# and the console with what a desktop is told of it. Manual pages and completions are made by the
# programs themselves, from what parses their command lines.
include(GNUInstallDirs)

set(ORVANE_MANUAL ${CMAKE_BINARY_DIR}/manual)
set(ORVANE_COMPONENTS_FOLDER share/orvane/components)

# Programs of one version with components of another do not work together: what is installed goes first.
file(CONFIGURE OUTPUT version CONTENT "@PROJECT_VERSION@\n" @ONLY)
install(CODE "
  execute_process(
    COMMAND \"\${CMAKE_COMMAND}\" -E cat \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/share/orvane/version\"
    OUTPUT_VARIABLE installed OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  if(installed AND NOT installed STREQUAL \"${PROJECT_VERSION}\")
    message(FATAL_ERROR \"Version \${installed} is installed under \${CMAKE_INSTALL_PREFIX}; \"
      \"remove it first, with the scripts/uninstall that belongs to it.\")
  endif()" ALL_COMPONENTS)

# orvane_manual(COMPONENT PROGRAMS...): pages and completions of the programs, and their places.
function(orvane_manual component)
  set(made)
  foreach(program IN LISTS ARGN)
    foreach(form man bash zsh fish)
      set(file ${ORVANE_MANUAL}/${form}/${program})
      add_custom_command(OUTPUT ${file}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${ORVANE_MANUAL}/${form}
        COMMAND ${program} --manual ${form} > ${file}
        DEPENDS ${program}
        VERBATIM)
      list(APPEND made ${file})
    endforeach()
    install(FILES ${ORVANE_MANUAL}/man/${program} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1
      RENAME ${program}.1 COMPONENT ${component})
    install(FILES ${ORVANE_MANUAL}/bash/${program} COMPONENT ${component}
      DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
    install(FILES ${ORVANE_MANUAL}/zsh/${program} RENAME _${program} COMPONENT ${component}
      DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions)
    install(FILES ${ORVANE_MANUAL}/fish/${program} RENAME ${program}.fish COMPONENT ${component}
      DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d)
  endforeach()
  add_custom_target(manual_${component} DEPENDS ${made})
endfunction()

# orvane_install_component(COMPONENT LIBRARY CLASSES...): an in-process component with its classes,
# registered where they lie by paths that go with them when the whole installation is moved.
function(orvane_install_component component library)
  install(TARGETS ${library} LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}/orvane
    COMPONENT ${component})
  install(CODE "
    set(prefix \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}\")
    set(folder \"\${prefix}/${ORVANE_COMPONENTS_FOLDER}\")
    execute_process(COMMAND \"$<TARGET_FILE:orvane-regsvr>\" --registry \"\${folder}\"
      \"\${prefix}/${CMAKE_INSTALL_LIBDIR}/orvane/lib${library}.so\"
      OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
    foreach(class ${ARGN})
      set(file \"\${folder}/\${class}.json\")
      file(READ \"\${file}\" content)
      string(REGEX REPLACE \"\\\"library\\\": \\\"[^\\\"]*\\\"\"
        \"\\\"library\\\": \\\"../../../${CMAKE_INSTALL_LIBDIR}/orvane/lib${library}.so\\\"\"
        content \"\${content}\")
      file(WRITE \"\${file}\" \"\${content}\")
      message(STATUS \"Registered: \${file}\")
      list(APPEND CMAKE_INSTALL_MANIFEST_FILES
        \"\${CMAKE_INSTALL_PREFIX}/${ORVANE_COMPONENTS_FOLDER}/\${class}.json\")
    endforeach()"
    COMPONENT ${component})
endfunction()

install(FILES ${CMAKE_CURRENT_BINARY_DIR}/version DESTINATION share/orvane COMPONENT tools)
install(TARGETS orvane orvane-historian orvane-regsvr
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
orvane_install_component(tools ORVOLEDB orvoledb)
orvane_manual(tools orvane orvane-historian orvane-regsvr)

install(TARGETS orvane-console RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT console)
orvane_install_component(console ORVOLEDBSnapIn orvoledbsnapin)
orvane_install_component(console ORVOLEDBCtls
  orvoledbctls.queryresults orvoledbctls.tableeditor orvoledbctls.tablequery)
orvane_manual(console orvane-console)
set(desktop ${CMAKE_SOURCE_DIR}/packaging/desktop)
install(FILES ${desktop}/orvane-console.desktop COMPONENT console
  DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES ${desktop}/orvane-console.xml COMPONENT console
  DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages)
install(FILES ${desktop}/org.orvane.console.metainfo.xml COMPONENT console
  DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
set(icon ${CMAKE_SOURCE_DIR}/src/console/look/images/orvane-console.svg)
set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable)
install(FILES ${icon} DESTINATION ${icons}/apps COMPONENT console)
install(FILES ${icon} DESTINATION ${icons}/mimetypes RENAME application-vnd.orvane.console.svg
  COMPONENT console)

# The guide, made of the documents.
set(pages user-guide grids sql errors components table-query)
list(TRANSFORM pages PREPEND ${CMAKE_SOURCE_DIR}/docs/ OUTPUT_VARIABLE written)
list(TRANSFORM written APPEND .md)
add_custom_command(OUTPUT ${CMAKE_BINARY_DIR}/guide/user-guide.html
  COMMAND ${CMAKE_SOURCE_DIR}/scripts/guide ${CMAKE_BINARY_DIR}/guide ${pages}
  DEPENDS ${CMAKE_SOURCE_DIR}/scripts/guide ${written}
  DEPFILE ${CMAKE_BINARY_DIR}/guide.d
  VERBATIM)
add_custom_target(guide DEPENDS ${CMAKE_BINARY_DIR}/guide/user-guide.html)
add_dependencies(program guide)
install(DIRECTORY ${CMAKE_BINARY_DIR}/guide DESTINATION share/orvane COMPONENT console)
