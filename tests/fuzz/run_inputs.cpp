// Runs a fuzz target on files, for compilers without a fuzzer.
// An input that breaks a law, or a folder without inputs, ends the process with an error.
#include "tests/fuzz/fuzzing.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace {

std::vector<std::filesystem::path> inputs_of(const std::filesystem::path& path) {
    if (!std::filesystem::is_directory(path)) return {path};
    std::vector<std::filesystem::path> found;
    for (const auto& each : std::filesystem::directory_iterator(path))
        if (each.is_regular_file()) found.push_back(each.path());
    return found;
}

} // namespace

int main(int count, char** arguments) {
    std::size_t runs = 0;
    for (int i = 1; i < count; ++i)
        for (const auto& path : inputs_of(arguments[i])) {
            std::printf("%s\n", path.c_str());
            std::fflush(stdout); // the last line names the input that ends the process
            std::ifstream in{path, std::ios::binary};
            if (!in) return 1;
            const std::string bytes{std::istreambuf_iterator<char>{in}, {}};
            LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
            ++runs;
        }
    std::printf("%zu inputs\n", runs);
    return runs == 0 ? 1 : 0;
}
