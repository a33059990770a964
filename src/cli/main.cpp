#include <cstdio>

int main() {
    std::puts("ostrelle-cli");
    return 0;
}
