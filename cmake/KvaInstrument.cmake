# Sanitizers and coverage counters hold for everything in a build folder.
# A double divided by 0 is wanted in some sheets, so that check stays off; a float that does not
# fit the integer it is cast to is undefined and is trapped.
if(KVA_SANITIZE)
    set(kva_sanitizers -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all)
    add_compile_options(${kva_sanitizers} -fno-omit-frame-pointer)
    add_link_options(${kva_sanitizers})
endif()

if(KVA_SANITIZE_THREADS)
    add_compile_options(-fsanitize=thread)
    add_link_options(-fsanitize=thread)
endif()

if(KVA_FUZZ)
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

if(KVA_COVERAGE)
    add_compile_options(--coverage -fprofile-update=atomic)
    add_link_options(--coverage)
endif()
