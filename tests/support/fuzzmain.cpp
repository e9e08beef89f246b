// SPDX-License-Identifier: LGPL-2.1-or-later
// Calls a fuzz target once for each file that its arguments name, or that is in a folder that they name. So
// the seeds and what the fuzzer has found are tests in every build.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> filesOf(const fs::path &argument)
{
    if (!fs::is_directory(argument))
        return {argument};
    std::vector<fs::path> files;
    for (const fs::directory_entry &entry : fs::directory_iterator(argument)) {
        if (entry.is_regular_file())
            files.push_back(entry.path());
    }
    return files;
}

bool run(const fs::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    // Has the size of the input, so that AddressSanitizer sees a read behind its end.
    const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (!stream.is_open() || stream.bad())
        return false;
    fprintf(stderr, "%s\n", file.c_str());
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(bytes.data()), bytes.size());
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    int count = 0;
    for (int i = 1; i < argc; ++i) {
        for (const fs::path &file : filesOf(argv[i])) {
            if (!run(file)) {
                fprintf(stderr, "Cannot read the input %s\n", file.c_str());
                return 1;
            }
            ++count;
        }
    }
    fprintf(stderr, "%d inputs\n", count);
    return count > 0 ? 0 : 1;
}
