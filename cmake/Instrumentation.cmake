# Sanitizers and coverage, chosen by the presets.
if(VELTARO_SANITIZE)
    add_compile_options(-fsanitize=${VELTARO_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    add_link_options(-fsanitize=${VELTARO_SANITIZE})
endif()
if(VELTARO_COVERAGE)
    add_compile_options(--coverage)
    add_link_options(--coverage)
endif()
