# What drivers leave behind can be told from what we do only while they are loaded: with AddressSanitizer, nothing is unloaded.
if(LUMEN_DECK_SANITIZE STREQUAL "address")
    add_library(keep_libraries SHARED ${PROJECT_SOURCE_DIR}/tests/support/KeepLibraries.c)
    set_target_properties(keep_libraries PROPERTIES AUTOMOC OFF COMPILE_OPTIONS "" LINK_OPTIONS ""
        C_VISIBILITY_PRESET default)
endif()

# sanitizer_environment(<variable> <suppressions for ThreadSanitizer>): what a test's environment tells the sanitizers.
# Qt and GLib are not built with ThreadSanitizer, which does not see their locks: it leaves what they do by themselves and
# watches what they call back.
function(sanitizer_environment variable races)
    set(support ${PROJECT_SOURCE_DIR}/tests/support)
    set(environment "TSAN_OPTIONS=ignore_noninstrumented_modules=1 suppressions=${races} history_size=4"
        "LSAN_OPTIONS=suppressions=${support}/lsan.supp" "ASAN_OPTIONS=detect_leaks=1:verify_asan_link_order=0")
    if(TARGET keep_libraries)
        list(APPEND environment "LD_PRELOAD=$<TARGET_FILE:keep_libraries>")
    endif()
    set(${variable} "${environment}" PARENT_SCOPE)
endfunction()
