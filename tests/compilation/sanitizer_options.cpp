// Defaults of the sanitizers for the test programs, however they are started; the environment still
// overrides them. Requests for impossible amounts of memory are part of the tests: they get null.
extern "C" const char* __asan_default_options()
{
    return "allocator_may_return_null=1:detect_leaks=1:detect_stack_use_after_return=1:"
           "check_initialization_order=1:strict_init_order=1:strict_string_checks=1";
}

extern "C" const char* __ubsan_default_options()
{
    return "print_stacktrace=1:halt_on_error=1";
}
