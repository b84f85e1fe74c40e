# Changes the installed files to the form that Debian expects, before the packages are made.
set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY})
set(share ${root}/program/usr/share)

# Debian's zsh searches vendor-completions for the functions of packages.
file(RENAME ${share}/zsh/site-functions ${share}/zsh/vendor-completions)
file(RENAME ${root}/development/usr/share/doc/quillmark ${root}/development/usr/share/doc/libquillmark-dev)
execute_process(COMMAND gzip -9n ${share}/man/man1/quillmark.1 ${share}/doc/quillmark/CHANGELOG.md COMMAND_ERROR_IS_FATAL ANY)

string(TIMESTAMP now "%a, %d %b %Y %H:%M:%S +0000" UTC)
foreach(doc ${share}/doc/quillmark ${root}/development/usr/share/doc/libquillmark-dev)
  file(WRITE ${doc}/changelog "@PROJECT_NAME@ (@PROJECT_VERSION@) unstable; urgency=medium

  * See CHANGELOG.md in the package @PROJECT_NAME@.

 -- @CPACK_PACKAGE_CONTACT@  ${now}
")
  file(CHMOD ${doc}/changelog PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
  execute_process(COMMAND gzip -9n ${doc}/changelog COMMAND_ERROR_IS_FATAL ANY)
endforeach()
