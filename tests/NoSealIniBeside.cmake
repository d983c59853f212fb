# cmake -DDIR=<folder of the built library> -P NoSealIniBeside.cmake
# The library reads a seal.ini beside itself before any other, so one left
# there (in any letter case) would be the station of every test: fail at
# once, naming it, rather than let the tests wait on dialogs it changes.
file(GLOB entries LIST_DIRECTORIES true "${DIR}/*")
foreach(entry IN LISTS entries)
    get_filename_component(name "${entry}" NAME)
    string(TOLOWER "${name}" name)
    if(name STREQUAL "seal.ini")
        message(FATAL_ERROR "${entry} lies beside the built library, which reads it before "
                            "any other seal.ini. Move it away and run the tests again.")
    endif()
endforeach()
