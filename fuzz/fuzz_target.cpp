// One libFuzzer target: BRANTOK_FUZZ_ENTRY names the entry of fuzz_entries.h it drives.
// Built only by `make fuzz` (clang, -fsanitize=fuzzer,address,undefined).
#include "fuzz/fuzz_entries.h"

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    FuzzSetUp();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    return BRANTOK_FUZZ_ENTRY(data, size);
}
