// Loads a library as the agent does, in a process that has loaded nothing else, and tells how many
// nanoseconds that took: load-probe LIBRARY [SYMBOL]
#include <cstdio>
#include <ctime>
#include <dlfcn.h>

namespace {

long long now() {
    timespec time = {};
    clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * 1000000000LL + time.tv_nsec;
}

} // namespace

int main(int argc, char** argv) {
    const long long begin = now();
    void* const library = argc < 2 ? nullptr : dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr || (argc > 2 && dlsym(library, argv[2]) == nullptr)) {
        fprintf(stderr, "load-probe: %s\n", dlerror());
        return 1;
    }
    printf("%lld\n", now() - begin);
    return 0;
}
