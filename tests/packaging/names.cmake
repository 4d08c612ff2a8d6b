# The files that systems read name the same things: one type for designs with one ending and icon,
# one identity, and a version that stands in the project alone.
# Run: cmake -DROOT=... -DVERSION=... -P names.cmake
set(packaging ${ROOT}/packaging)

# take(VARIABLE FILE EXPRESSION): what the expression's first group matches in the file.
function(take variable file expression)
    file(READ ${file} text)
    if(NOT text MATCHES "${expression}")
        message(SEND_ERROR "${file}: nothing matches ${expression}")
    endif()
    set(${variable} "${CMAKE_MATCH_1}" PARENT_SCOPE)
endfunction()

function(same what a b)
    if(NOT a STREQUAL b)
        message(SEND_ERROR "${what}: \"${a}\" and \"${b}\"")
    endif()
endfunction()

set(metainfo ${packaging}/linux/org.tarnwick.Ladderwise.metainfo.xml.in)
take(type ${packaging}/linux/ladderwise.xml "mime-type type=\"([^\"]*)\"")
take(entryType ${packaging}/linux/ladderwise.desktop "MimeType=([^\n]*);")
take(provided ${metainfo} "<mediatype>(.*)</mediatype>")
same("type of designs" "${type}" "${entryType}")
same("type of designs" "${type}" "${provided}")

take(icon ${packaging}/linux/ladderwise.xml "icon name=\"([^\"]*)\"")
string(REPLACE "/" "-" wanted "${type}")
same("icon of designs" "${icon}" "${wanted}")
take(installed ${packaging}/linux/CMakeLists.txt "installed_icon\\(ladderwise-design mimetypes ([^)]*)\\)")
same("icon of designs" "${icon}" "${installed}")

take(glob ${packaging}/linux/ladderwise.xml "glob pattern=\"\\*([^\"]*)\"")
take(ending ${packaging}/windows/installer.nsi "define ENDING \"([^\"]*)\"")
take(written ${ROOT}/files/FileReadSave.h "DesignFileExtension = \"([^\"]*)\"")
same("ending of designs" "${glob}" "${ending}")
same("ending of designs" "${glob}" ".${written}")

take(identity ${metainfo} "<id>(.*)</id>")
take(flatpak ${packaging}/flatpak/org.tarnwick.Ladderwise.yml "\nid: ([^\n]*)")
same("identity" "${identity}" "${flatpak}")

# Version and day are configured; a copy would stay behind.
string(REPLACE "." "\\." version "${VERSION}")
file(GLOB_RECURSE files ${packaging}/*)
foreach(file ${files})
    file(READ ${file} text)
    if(text MATCHES "[^0-9.]${version}[^0-9.]")
        message(SEND_ERROR "${file}: holds the version ${VERSION} by itself")
    endif()
endforeach()
