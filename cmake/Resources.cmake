# The resource pipeline: pictures drawn from SVG sources, the interface font made from the
# system's collection, and resource trees put together from files that exist only after the build.

# The interpreter that Debian's fontTools package is installed for; another python3 that comes
# first on the path would not find it.
find_program(VELTARO_PYTHON NAMES python3 PATHS /usr/bin NO_DEFAULT_PATH)
if(NOT VELTARO_PYTHON)
    veltaro_missing("The system's Python" python3)
endif()
execute_process(COMMAND ${VELTARO_PYTHON} -c "import fontTools.ttLib" RESULT_VARIABLE no_fonttools
    OUTPUT_QUIET ERROR_QUIET)
if(no_fonttools)
    veltaro_missing("fontTools for Python" python3-fonttools)
endif()

set(VELTARO_FONT_COLLECTION /usr/share/fonts/opentype/noto/NotoSansCJK-Regular.ttc
    CACHE FILEPATH "Font collection that holds the interface font")
if(NOT EXISTS ${VELTARO_FONT_COLLECTION})
    veltaro_missing("${VELTARO_FONT_COLLECTION}" fonts-noto-cjk)
endif()

set(VELTARO_QT_TRANSLATION /usr/share/qt5/translations/qtbase_zh_CN.qm
    CACHE FILEPATH "Qt's own Chinese translation")
if(NOT EXISTS ${VELTARO_QT_TRANSLATION})
    veltaro_missing("${VELTARO_QT_TRANSLATION}" qttranslations5-l10n)
endif()

# Draws every picture of the list file below `out_dir` (each .png also as @2x, and all as plain
# pixels, .argb) with `tool` and sets `out_names` to the files' names relative to it.
function(veltaro_render_art out_names tool list art_dir out_dir)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${list})
    file(STRINGS ${list} lines REGEX "^[^# ]")
    set(names)
    foreach(line IN LISTS lines)
        string(REGEX MATCH "^[^ ]+" name "${line}")
        string(REGEX REPLACE "\\.(png|ico)$" "" base ${name})
        list(APPEND names ${base}.argb)
        if(name MATCHES "png$")
            list(APPEND names ${name} ${base}@2x.png ${base}@2x.argb)
        endif()
    endforeach()
    list(TRANSFORM names PREPEND ${out_dir}/ OUTPUT_VARIABLE files)
    file(GLOB sources CONFIGURE_DEPENDS ${art_dir}/*.svg)
    # A sanitizer build instruments the tool too; what Qt still holds at exit is no concern here.
    add_custom_command(OUTPUT ${files}
        COMMAND ${CMAKE_COMMAND} -E env ASAN_OPTIONS=detect_leaks=0 TSAN_OPTIONS=report_bugs=0
            $<TARGET_FILE:${tool}> ${list} ${art_dir} ${out_dir}
        DEPENDS ${tool} ${list} ${sources}
        COMMENT "Drawing pictures" VERBATIM)
    set(${out_names} ${names} PARENT_SCOPE)
endfunction()

# Makes the interface font `out` of the face called `family` in the font collection.
function(veltaro_make_font out family new_family)
    set(script ${CMAKE_CURRENT_SOURCE_DIR}/tools/makefont.py)
    add_custom_command(OUTPUT ${out}
        COMMAND ${VELTARO_PYTHON} ${script} ${VELTARO_FONT_COLLECTION} ${family} ${out} ${new_family}
        DEPENDS ${script} ${VELTARO_FONT_COLLECTION}
        COMMENT "Making ${new_family}" VERBATIM)
endfunction()

# Writes a resource collection with the given prefix. The rest are pairs: the name in the tree,
# the file.
function(veltaro_write_qrc qrc prefix)
    set(text "<RCC>\n<qresource prefix=\"${prefix}\">\n")
    set(pairs ${ARGN})
    while(pairs)
        list(POP_FRONT pairs alias file)
        string(APPEND text "<file alias=\"${alias}\">${file}</file>\n")
    endwhile()
    string(APPEND text "</qresource>\n</RCC>\n")
    file(CONFIGURE OUTPUT ${qrc} CONTENT "${text}" @ONLY)
endfunction()
