// Runs a fuzz target over files (or every file of folders) given on the
// command line: how the corpus is replayed as a test without libFuzzer.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t nSize);

int main(int argc, char **argv)
{
    namespace fs = std::filesystem;
    int nRun = 0;
    for (int i = 1; i < argc; ++i) {
        std::vector<fs::path> files;
        if (fs::is_directory(argv[i])) {
            for (const auto &entry : fs::recursive_directory_iterator(argv[i]))
                if (entry.is_regular_file())
                    files.push_back(entry.path());
        } else {
            files.push_back(argv[i]);
        }
        for (const fs::path &path : files) {
            std::ifstream in(path, std::ios::binary);
            if (!in) {
                std::fprintf(stderr, "cannot read %s\n", path.c_str());
                return 2;
            }
            std::vector<char> data((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
            LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(data.data()), data.size());
            ++nRun;
        }
    }
    std::printf("replayed %d inputs\n", nRun);
    return nRun > 0 ? 0 : 1;
}
