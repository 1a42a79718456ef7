// Runs files, and all files of directories, through a fuzz target without its engine.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count);

namespace {

namespace files = std::filesystem;

void replay(const files::path& path)
{
    std::ifstream file(path, std::ios::binary);
    const std::vector<char> content{std::istreambuf_iterator<char>(file), {}};
    // On the heap and of exact size, so that reading beyond is seen.
    const std::vector<std::uint8_t> bytes(content.begin(), content.end());
    std::fprintf(stderr, "%s\n", path.filename().c_str());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

} // namespace

int main(int count, char** paths)
{
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
    std::fprintf(stderr, "%zu inputs replayed\n", replayed);
    return replayed > 0 ? 0 : 1; // a corpus that is not there is no success
}
