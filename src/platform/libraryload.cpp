// What happens when the library is loaded: it asks not to be told of threads that start and end.
// Only one kind of system tells libraries about threads.
#if defined(_WIN32)

#include <windows.h>

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) DisableThreadLibraryCalls(instance);
    return TRUE;
}

#endif
