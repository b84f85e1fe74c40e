# Defines quillmark::QuillmarkKit, quillmark::ID3TagEditor, quillmark::ID3v2 and quillmark::platform.
include(CMakeFindDependencyMacro)
find_dependency(Threads)
find_dependency(ZLIB)
list(PREPEND CMAKE_MODULE_PATH ${CMAKE_CURRENT_LIST_DIR})
find_dependency(utf8proc)
list(POP_FRONT CMAKE_MODULE_PATH)
include(${CMAKE_CURRENT_LIST_DIR}/quillmark-targets.cmake)
