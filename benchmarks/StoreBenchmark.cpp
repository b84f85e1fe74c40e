#include <benchmark/benchmark.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <string>

#include "QuillmarkKit/store/MP3TagStore.h"
#include "QuillmarkKit/transfer/TagApplier.h"

namespace {

using namespace QuillmarkKit;

/// A tagged file with `audioSize` bytes of audio, which the destructor removes.
class TaggedFile {
 public:
  TaggedFile(const TagSet& tags, std::int64_t audioSize)
      : path_(std::filesystem::temp_directory_path() / "quillmark-benchmark.mp3") {
    std::ofstream(path_, std::ios::binary)
        << "\xFF\xFB" << std::string(static_cast<std::size_t>(audioSize), 'U');
    ID3TagEditorStore(true).write(tags, path_);
  }
  ~TaggedFile() { std::filesystem::remove(path_); }
  TaggedFile(const TaggedFile&) = delete;
  TaggedFile& operator=(const TaggedFile&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

TagSet tagsOf(const std::string& album) {
  TagSet tags;
  tags.title = "Kyrie";
  tags.album = album;
  tags.year = 1977;
  return tags;
}

void readFile(benchmark::State& state) {
  const TaggedFile file(tagsOf("Morning Songs"), state.range(0));
  const ID3TagEditorStore store(true);
  for (auto _ : state) benchmark::DoNotOptimize(store.read(file.path()));
}
BENCHMARK(readFile)->Arg(8'000'000);

void applyToUnchangedFile(benchmark::State& state) {
  const TagSet tags = tagsOf("Morning Songs");
  const TaggedFile file(tags, state.range(0));
  const ID3TagEditorStore store(true);
  const TagApplier applier(store);
  platform::ReplacementRun run;
  for (auto _ : state)
    benchmark::DoNotOptimize(applier.applyToOne(tags, file.path(), TagFields::albumIdentity, false, run));
}
BENCHMARK(applyToUnchangedFile)->Arg(8'000'000);

void applyToChangingFile(benchmark::State& state) {
  const std::array sources{tagsOf("Morning Songs"), tagsOf("Evening Songs")};
  const TaggedFile file(sources[0], state.range(0));
  const ID3TagEditorStore store(true);
  const TagApplier applier(store);
  platform::ReplacementRun run;
  std::size_t round = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(
        applier.applyToOne(sources[++round % 2], file.path(), TagFields::albumIdentity, false, run));
  }
}
BENCHMARK(applyToChangingFile)->Arg(100'000)->Arg(8'000'000)->Unit(benchmark::kMillisecond);

}  // namespace
