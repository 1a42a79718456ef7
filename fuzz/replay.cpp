// Runs every call of a family on tame arguments, and files, and all files of directories, through
// it without the engine; all of them under all circumstances.
#include "fuzz/trial.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace {

namespace files = std::filesystem;

void replay(const files::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> content{std::istreambuf_iterator<char>(file), {}};
    // On the heap and of exact size, so that reading beyond is seen.
    const std::vector<std::uint8_t> bytes(content.begin(), content.end());
    std::fprintf(stderr, "%s\n", path.filename().c_str());
    fuzz::run_in_all(fuzz::family(), bytes.data(), bytes.size());
}

} // namespace

int main(int count, char** paths)
{
    const std::size_t generated = fuzz::run_each(fuzz::family());
    std::size_t replayed = 0;
    for (int k = 1; k < count; ++k) {
        if (!files::is_directory(paths[k])) {
            replay(paths[k]);
            ++replayed;
            continue;
        }
        for (const auto& entry : files::recursive_directory_iterator(paths[k])) {
            if (!entry.is_regular_file()) continue;
            replay(entry.path());
            ++replayed;
        }
    }
    std::fprintf(stderr, "%zu inputs generated, %zu replayed\n", generated, replayed);
    return replayed > 0 ? 0 : 1; // a corpus that is not there is no success
}
