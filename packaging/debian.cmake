# Turns what was installed into what Debian expects, before the package is made of it.
set(share ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/usr/share)
set(doc ${share}/doc/@PROJECT_NAME@)

# Debian's zsh looks for the functions of packages under another name.
file(RENAME ${share}/zsh/site-functions ${share}/zsh/vendor-completions)

string(TIMESTAMP now "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(WRITE ${doc}/changelog "@PROJECT_NAME@ (@PROJECT_VERSION@) unstable; urgency=medium

  * What is new stands in CHANGELOG.md.

 -- @CPACK_PACKAGE_CONTACT@  ${now}
")
file(CHMOD ${doc}/changelog PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
execute_process(COMMAND gzip -9n ${share}/man/man1/quillmark.1 ${doc}/CHANGELOG.md ${doc}/changelog
                COMMAND_ERROR_IS_FATAL ANY)
