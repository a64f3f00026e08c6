# Lays the licences of the libraries in the package beside them, as the Debian packages that they come from
# state them. A library of no package is an error.
set(home "$ENV{DESTDIR}${CMAKE_INSTALL_PREFIX}")

file(GLOB_RECURSE libraries LIST_DIRECTORIES false "${home}/lib/*.so*" "${home}/plugins/*.so*")
list(TRANSFORM libraries REPLACE ".*/" "")
# Half of the packages call the folder /lib, half /usr/lib, which are the same.
set(folders /lib/*-linux-gnu /usr/lib/*-linux-gnu /usr/lib/*-linux-gnu/qt6/plugins/*)
set(paths "")
foreach(library IN LISTS libraries)
    list(TRANSFORM folders APPEND "/${library}" OUTPUT_VARIABLE places)
    file(GLOB found ${places})
    list(APPEND paths ${found})
endforeach()
execute_process(COMMAND dpkg-query --search ${paths} OUTPUT_VARIABLE owners ERROR_QUIET)

set(packages libeigen3-dev libnanoflann-dev) # compiled into the program
foreach(library IN LISTS libraries)
    if(NOT owners MATCHES "([a-z0-9.+-]+)(:[a-z0-9]+)?: [^\n]*/${library}\n")
        message(FATAL_ERROR "${library} is of no Debian package, so that its licence is not known.")
    endif()
    list(APPEND packages ${CMAKE_MATCH_1})
endforeach()

list(REMOVE_DUPLICATES packages)
foreach(package IN LISTS packages)
    file(INSTALL DESTINATION "${home}/licences" TYPE FILE FILES "/usr/share/doc/${package}/copyright"
         RENAME ${package}.txt)
endforeach()
# The full texts that those files refer to.
file(INSTALL DESTINATION "${home}/licences" TYPE DIRECTORY FILES /usr/share/common-licenses)
