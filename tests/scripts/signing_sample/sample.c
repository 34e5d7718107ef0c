__declspec(dllexport) int sample_entry(void) {
    return 1;
}
