# sanitizer_environment(<variable> <suppressions for ThreadSanitizer>): what a test's environment tells the sanitizers.
# Qt and GLib are not built with ThreadSanitizer, which does not see their locks: it leaves what they do by themselves and
# watches what they call back.
function(sanitizer_environment variable races)
    set(support ${PROJECT_SOURCE_DIR}/tests/support)
    set(${variable} "TSAN_OPTIONS=ignore_noninstrumented_modules=1 suppressions=${races} history_size=4"
        "LSAN_OPTIONS=suppressions=${support}/lsan.supp" "ASAN_OPTIONS=detect_leaks=1" PARENT_SCOPE)
endfunction()
