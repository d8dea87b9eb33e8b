# Runs on the finished packages: where CPack calls ldconfig from scripts of the package, Debian wants
# its trigger, which runs once for all packages of an installation.
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE failed OUTPUT_QUIET)
  if(failed)
    message(FATAL_ERROR "${ARGN} failed")
  endif()
endfunction()

foreach(package IN LISTS CPACK_PACKAGE_FILES)
  set(tree "${package}.tree")
  run(dpkg-deb --raw-extract "${package}" "${tree}")
  if(EXISTS "${tree}/DEBIAN/postinst")
    file(REMOVE "${tree}/DEBIAN/postinst" "${tree}/DEBIAN/postrm")
    file(WRITE "${tree}/DEBIAN/triggers" "activate-noawait ldconfig\n")
    run(dpkg-deb --root-owner-group --build "${tree}" "${package}")
  endif()
  file(REMOVE_RECURSE "${tree}")
endforeach()
