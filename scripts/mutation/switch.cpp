// Which mutant a test process is, and which ones it came by.
#include "scripts/mutation/switch.h"

#include <cstdlib>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace {

const std::size_t MostMutants = 1 << 20;
unsigned char forgotten[MostMutants];

/** A mapped file: what a crashed process or the child of a death test reached
 *  is in it, too. */
void* mappedFile(const char* name) {
    const int file = open(name, O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (file < 0 || ftruncate(file, off_t(MostMutants)) != 0)
        std::abort();
    void* memory = mmap(nullptr, MostMutants, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    if (memory == MAP_FAILED)
        std::abort();
    close(file);
    return memory;
}

} // namespace

int activeMutant = -1;
unsigned char* reachedMutants = forgotten;

/** Before the constructors of the program, which depends on this library. */
__attribute__((constructor)) static void readEnvironment() {
    if (const char* number = std::getenv("MUTANT"))
        activeMutant = std::atoi(number);
    if (const char* name = std::getenv("MUTANTS_REACHED"))
        reachedMutants = static_cast<unsigned char*>(mappedFile(name));
}
