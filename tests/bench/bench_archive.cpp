// Packing and unpacking the project archive against tar on the same folders:
// 1000 files of 64 KiB and 4 files of 64 MiB. Wall-clock time (tar runs as a child process);
// for the large files also the peak memory above the program's baseline (VmHWM - VmRSS).
#include "platform/system/UserMessages.h"
#include "store/ProjectArchive.h"

#include <benchmark/benchmark.h>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <tuple>
#include <vector>

namespace {

namespace fs = std::filesystem;
using namespace pluvarine;

class SilentProgress : public ProgressSink {
public:
    void ShowProgress(const std::string&, std::int32_t) override {}
    void EndProgress() override {}
};

class SilentMessages : public UserMessages {
public:
    void showMessage(const std::string&, Icon) override {}
};

// The benchmark folders, made once under the temporary folder and removed at the end.
class BenchFolders {
public:
    static BenchFolders& get() {
        static BenchFolders folders;
        return folders;
    }
    ~BenchFolders() {
        std::error_code ignored;
        fs::remove_all(m_root, ignored);
    }

    fs::path source(const std::string& set) const { return m_root / set; }
    fs::path archive(const std::string& set) const { return m_root / (set + ".dat"); }
    fs::path tarball(const std::string& set) const { return m_root / (set + ".tar"); }
    fs::path target(const std::string& set) const { return m_root / (set + "-out"); }

private:
    BenchFolders() {
        const char* tmp = std::getenv("TMPDIR");
        std::string pattern =
            std::string(tmp != nullptr ? tmp : "/tmp") + "/pluvarine-bench-XXXXXX";
        m_root = ::mkdtemp(pattern.data());
        fill("small", 1000, 64 << 10);
        fill("large", 4, 64 << 20);
    }

    void fill(const std::string& set, int files, std::size_t size) {
        fs::create_directory(source(set));
        std::vector<char> block(1 << 20);
        std::uint64_t state = 0x9E3779B97F4A7C15ull;
        for (char& c : block) { // xorshift: incompressible, cheap
            state ^= state << 13;
            state ^= state >> 7;
            state ^= state << 17;
            c = static_cast<char>(state);
        }
        for (int i = 0; i < files; ++i) {
            std::ofstream out(source(set) / (" " + std::to_string(i + 1) + ".tob"),
                              std::ios::binary);
            for (std::size_t done = 0; done < size;) {
                const std::size_t piece = std::min(size - done, block.size() - (i % 997));
                out.write(block.data() + (i % 997), static_cast<std::streamsize>(piece));
                done += piece;
            }
        }
    }

    fs::path m_root;
};

long statusKiB(const char* field) {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line)) {
        if (line.rfind(field, 0) == 0) {
            return std::stol(line.substr(std::string(field).size()));
        }
    }
    return 0;
}

// Resets the peak resident size, so VmHWM afterwards is the peak of what ran in between.
long resetPeak() {
    std::ofstream("/proc/self/clear_refs") << "5";
    return statusKiB("VmRSS:");
}

void freshFolder(const fs::path& folder) {
    fs::remove_all(folder);
    fs::create_directory(folder);
}

void run(const std::string& command) {
    if (std::system(command.c_str()) != 0) {
        std::abort();
    }
}

void packOurs(benchmark::State& state, const std::string& set) {
    BenchFolders& folders = BenchFolders::get();
    SilentProgress progress;
    double peak = 0;
    for (auto _ : state) {
        const long baseline = resetPeak();
        PackFolder(folders.source(set).string(), folders.archive(set).string(), "*.*", progress,
                   {});
        peak = std::max(peak, (statusKiB("VmHWM:") - baseline) / 1024.0);
    }
    state.counters["peak_MiB"] = peak;
    state.SetBytesProcessed(state.iterations() *
                            static_cast<std::int64_t>(fs::file_size(folders.archive(set))));
}

void unpackOurs(benchmark::State& state, const std::string& set) {
    BenchFolders& folders = BenchFolders::get();
    SilentProgress progress;
    SilentMessages messages;
    if (!fs::exists(folders.archive(set))) {
        PackFolder(folders.source(set).string(), folders.archive(set).string(), "*.*", progress,
                   {});
    }
    double peak = 0;
    for (auto _ : state) {
        state.PauseTiming();
        freshFolder(folders.target(set));
        state.ResumeTiming();
        const long baseline = resetPeak();
        UnpackFolder(folders.archive(set).string(), folders.target(set).string(), progress, {},
                     messages);
        peak = std::max(peak, (statusKiB("VmHWM:") - baseline) / 1024.0);
    }
    state.counters["peak_MiB"] = peak;
    state.SetBytesProcessed(state.iterations() *
                            static_cast<std::int64_t>(fs::file_size(folders.archive(set))));
}

void tarCreate(benchmark::State& state, const std::string& set) {
    BenchFolders& folders = BenchFolders::get();
    for (auto _ : state) {
        run("tar -cf '" + folders.tarball(set).string() + "' -C '" + folders.source(set).string() +
            "' .");
    }
    state.SetBytesProcessed(state.iterations() *
                            static_cast<std::int64_t>(fs::file_size(folders.tarball(set))));
}

void tarExtract(benchmark::State& state, const std::string& set) {
    BenchFolders& folders = BenchFolders::get();
    if (!fs::exists(folders.tarball(set))) {
        run("tar -cf '" + folders.tarball(set).string() + "' -C '" + folders.source(set).string() +
            "' .");
    }
    for (auto _ : state) {
        state.PauseTiming();
        freshFolder(folders.target(set));
        state.ResumeTiming();
        run("tar -xf '" + folders.tarball(set).string() + "' -C '" + folders.target(set).string() +
            "'");
    }
    state.SetBytesProcessed(state.iterations() *
                            static_cast<std::int64_t>(fs::file_size(folders.tarball(set))));
}

void configure(benchmark::internal::Benchmark* b, int iterations) {
    b->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(iterations);
}

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    BenchFolders::get(); // make the data before the first measurement
    for (const auto& [set, label, iterations] :
         {std::tuple{"small", "1000x64KiB", 10}, std::tuple{"large", "4x64MiB", 3}}) {
        for (const auto& [name, function] :
             {std::pair{"packOurs", &packOurs}, std::pair{"tarCreate", &tarCreate},
              std::pair{"unpackOurs", &unpackOurs}, std::pair{"tarExtract", &tarExtract}}) {
            configure(benchmark::RegisterBenchmark((std::string(name) + "/" + label).c_str(),
                                                   function, std::string(set)),
                      iterations);
        }
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
