# Programs for Windows: icon, version and manifest in each, and one flat folder when installed, from
# which they run as they are.
set(CMAKE_INSTALL_BINDIR . CACHE PATH "programs")
set(CMAKE_INSTALL_DOCDIR . CACHE PATH "README and licence")

# windows_program(TARGET DESCRIPTION)
function(windows_program name description)
    set(folder ${PROJECT_SOURCE_DIR}/packaging/windows)
    string(REPLACE "." "," version "${PROJECT_VERSION}")
    string(REGEX MATCHALL "," commas "${version}")
    list(LENGTH commas dots)
    while(dots LESS 3)
        string(APPEND version ",0")
        math(EXPR dots "${dots} + 1")
    endwhile()
    if(MSVC)
        # The linker merges it with its own.
        target_sources(${name} PRIVATE ${folder}/program.manifest)
    else()
        set(manifest "1 24 \"${folder}/program.manifest\"")
    endif()
    configure_file(${folder}/program.rc.in ${CMAKE_CURRENT_BINARY_DIR}/${name}.rc @ONLY)
    target_sources(${name} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${name}.rc)
    set_source_files_properties(${CMAKE_CURRENT_BINARY_DIR}/${name}.rc PROPERTIES
        SKIP_UNITY_BUILD_INCLUSION ON OBJECT_DEPENDS "${folder}/program.manifest")
endfunction()
