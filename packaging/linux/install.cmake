# The program looks for its guides three folders above itself. So it stands that deep in a folder
# of the product's own, with a link to it where people's shells look.
set(gx_home lib/gx7100group)
set(gx_bin ${gx_home}/${CMAKE_SYSTEM_NAME}/${CMAKE_SYSTEM_PROCESSOR}/bin)
set(gx_doc ${CMAKE_INSTALL_DATAROOTDIR}/doc/gx7100group)
set(gx_icons ${PROJECT_SOURCE_DIR}/packaging/icons/hicolor)

# gx_install_link(folder name target): a link, relative so that the whole can be moved.
function(gx_install_link folder name target)
  set(link ${CMAKE_CURRENT_BINARY_DIR}/links/${folder}/${name})
  cmake_path(GET link PARENT_PATH parent)
  file(MAKE_DIRECTORY ${parent})
  file(RELATIVE_PATH relative ${CMAKE_INSTALL_PREFIX}/${folder} ${CMAKE_INSTALL_PREFIX}/${target})
  file(CREATE_LINK ${relative} ${link} SYMBOLIC)
  install(FILES ${link} DESTINATION ${folder})
endfunction()

# gx_install_compressed(source folder name): `source` as `name`.gz, the same whenever it is made.
find_program(GX_GZIP gzip REQUIRED)
function(gx_install_compressed source folder name)
  set(compressed ${CMAKE_CURRENT_BINARY_DIR}/compressed/${name}.gz)
  add_custom_command(OUTPUT ${compressed}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_CURRENT_BINARY_DIR}/compressed
    COMMAND ${GX_GZIP} -9nc ${source} > ${compressed}
    DEPENDS ${source} VERBATIM)
  add_custom_target(compress_${name} ALL DEPENDS ${compressed})
  install(FILES ${compressed} DESTINATION ${folder})
endfunction()

install(TARGETS GX7100Group RUNTIME DESTINATION ${gx_bin})
gx_install_link(${CMAKE_INSTALL_BINDIR} GX7100Group ${gx_bin}/GX7100Group)
install(TARGETS gx7100sim RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})

install(DIRECTORY ${gx_icons} DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/icons)
install(FILES ${CMAKE_CURRENT_LIST_DIR}/com.vestra.GX7100Group.desktop
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/applications)
configure_file(${CMAKE_CURRENT_LIST_DIR}/com.vestra.GX7100Group.metainfo.xml.in
               com.vestra.GX7100Group.metainfo.xml @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/com.vestra.GX7100Group.metainfo.xml
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/metainfo)

foreach(program GX7100Group gx7100sim)
  gx_install_compressed(${PROJECT_SOURCE_DIR}/packaging/man/${program}.1
                        ${CMAKE_INSTALL_MANDIR}/man1 ${program}.1)
endforeach()
install(FILES ${CMAKE_CURRENT_LIST_DIR}/copyright DESTINATION ${gx_doc})
gx_install_compressed(${CMAKE_CURRENT_LIST_DIR}/changelog ${gx_doc} changelog)

install(FILES ${gx_guide} DESTINATION ${gx_doc})
gx_install_link(${gx_home} GX7100Group_UserGuide.pdf ${gx_doc}/GX7100Group_UserGuide.pdf)

include(${CMAKE_CURRENT_LIST_DIR}/deb.cmake)
