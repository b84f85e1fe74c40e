# The component `development`: the files that other projects need to use the libraries. It is installed only if it is
# requested by name. Its paths are relative to the place of installation, so that the installation can be moved.
include(CMakePackageConfigHelpers)
set(development COMPONENT development EXCLUDE_FROM_ALL)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/quillmark)
# Install the headers in a folder of their own, because other projects may have folders with names such as platform/.
set(include_dir ${CMAKE_INSTALL_INCLUDEDIR}/quillmark)

# The headers that programs include. The headers that these include are installed, too.
set(headers
    ID3TagEditor/ID3TagEditor.h
    ID3v2/Reading.h
    ID3v2/Writing.h
    QuillmarkKit/store/MP3TagStore.h
    QuillmarkKit/store/file/StoreErrors.h
    QuillmarkKit/transfer/TagApplier.h
    platform/FileError.h
    platform/FileHandle.h)
set(installed)
while(headers)
  list(POP_FRONT headers header)
  list(APPEND installed ${header})
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${header})
  cmake_path(GET header PARENT_PATH folder)
  install(FILES ${PROJECT_SOURCE_DIR}/${header} DESTINATION ${include_dir}/${folder} ${development})
  file(STRINGS ${PROJECT_SOURCE_DIR}/${header} included REGEX "^#include \"")
  list(TRANSFORM included REPLACE "^#include \"([^\"]+)\".*" "\\1")
  list(APPEND headers ${included})
  list(REMOVE_DUPLICATES headers)
  list(REMOVE_ITEM headers ${installed})
endwhile()

# Installs the archive of quillmark::<name> and its pkg-config file. `ARGN` contains the pkg-config names of the
# libraries that it needs. They are public requirements, because programs that link an archive must link them, too.
cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig OUTPUT_VARIABLE prefix_from_pc)
get_target_property(definitions quillmark-platform INTERFACE_COMPILE_DEFINITIONS)
list(TRANSFORM definitions PREPEND "-D")
list(JOIN definitions " " definitions)
function(install_library target name description)
  install(TARGETS ${target} EXPORT quillmark ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} ${development}
          INCLUDES DESTINATION ${include_dir})
  list(JOIN ARGN " " requires)
  configure_file(library.pc.in quillmark-${name}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/quillmark-${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig ${development})
endfunction()
install_library(quillmark-platform platform "files and their replacement, bytes and text" libutf8proc)
install_library(ID3TagEditor ID3TagEditor "ID3v2 tags as frames by their names" quillmark-platform)
install_library(ID3v2 ID3v2 "the ID3v2 standards as plain values" quillmark-platform zlib)
install_library(QuillmarkKit QuillmarkKit "tags of MP3 files, and the same tags for many files" quillmark-ID3TagEditor quillmark-ID3v2)

# Remove bytecode for link-time optimization, which only the same version of the compiler can read. The machine code is
# kept.
if(CMAKE_INTERPROCEDURAL_OPTIMIZATION)
  install(CODE "
    file(GLOB archives \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/libquillmark-*.a\")
    foreach(archive IN LISTS archives)
      execute_process(COMMAND \"${CMAKE_OBJCOPY}\" --enable-deterministic-archives --wildcard --remove-section=.gnu.lto_*
                              --remove-section=.gnu.debuglto_* --remove-section=.comment --strip-symbol=__gnu_lto_* \${archive} COMMAND_ERROR_IS_FATAL ANY)
    endforeach()" ${development})
endif()

install(EXPORT quillmark NAMESPACE quillmark:: DESTINATION ${package_dir} FILE quillmark-targets.cmake ${development})
# The interfaces may change with each minor version.
write_basic_package_version_file(quillmark-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES quillmark-config.cmake Findutf8proc.cmake ${CMAKE_CURRENT_BINARY_DIR}/quillmark-config-version.cmake
        DESTINATION ${package_dir} ${development})
install(FILES ${PROJECT_SOURCE_DIR}/docs/library.md third-party-notices DESTINATION ${CMAKE_INSTALL_DOCDIR} ${development})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples DESTINATION ${CMAKE_INSTALL_DOCDIR} ${development})
