// Programs that end while their threads are inside the library.
#include "tests/contract/posix_surroundings.hpp"

#include <gtest/gtest.h>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tallowmere::test {
namespace {

constexpr int kPrograms = 20;

/// How the program ended, as waitpid tells it; -1 when it could not be started.
int runEndingClient() {
    char program[] = TALLOWMERE_ENDING_CLIENT;
    char* const arguments[] = {program, nullptr};
    pid_t id = 0;
    int status = 0;
    if (::posix_spawn(&id, program, nullptr, nullptr, arguments, environ) != 0) return -1;
    return ::waitpid(id, &status, 0) == id ? status : -1;
}

TEST(ProgramEnd, WithThreadsInsideTheLibraryIsAnOrdinaryEnd) {
    const PosixSurroundings surroundings;
    for (int program = 0; program < kPrograms; ++program) ASSERT_EQ(runEndingClient(), 0) << program;
}

} // namespace
} // namespace tallowmere::test
