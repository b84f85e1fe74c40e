#include <benchmark/benchmark.h>

#include <algorithm>

#include "ID3TagEditor/ID3TagEditor.h"
#include "platform/base/Bytes.h"

namespace {

using namespace ID3TagEditor;
using Editor = ::ID3TagEditor::ID3TagEditor;
using platform::Bytes;

ID3Tag albumTag(std::int64_t pictureSize) {
  Bytes picture(static_cast<std::size_t>(pictureSize), 0x55);
  const Bytes signature{0xFF, 0xD8, 0xFF, 0xE0};
  std::ranges::copy(signature, picture.begin());
  return ID32v3TagBuilder()
      .title(ID3FrameWithStringContent("Kyrie"))
      .artist(ID3FrameWithStringContent("Väskelund"))
      .album(ID3FrameWithStringContent("Morning Songs"))
      .genre(ID3FrameGenre(std::nullopt, "Choral"))
      .trackPosition(ID3FramePartOfTotal(1, 4))
      .recordingYear(ID3FrameWithIntegerContent(1977))
      .attachedPicture(
          ID3PictureType::frontCover,
          ID3FrameAttachedPicture(std::move(picture), ID3PictureType::frontCover, ID3PictureFormat::jpeg))
      .build();
}

void readTag(benchmark::State& state) {
  const Editor editor;
  ID3Tag tag = albumTag(state.range(0));
  const platform::SharedBytes mp3 = editor.write(tag, Bytes());
  for (auto _ : state) benchmark::DoNotOptimize(editor.read(mp3));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(mp3.size()));
}
BENCHMARK(readTag)->Arg(16)->Arg(100'000)->Arg(10'000'000);

void createTag(benchmark::State& state) {
  const Editor editor;
  ID3Tag tag = albumTag(state.range(0));
  std::int64_t size = 0;
  for (auto _ : state) size += static_cast<std::int64_t>(editor.write(tag, Bytes()).size());
  state.SetBytesProcessed(size);
}
BENCHMARK(createTag)->Arg(16)->Arg(100'000)->Arg(10'000'000);

void walkPadding(benchmark::State& state) {
  const Editor editor;
  Bytes mp3{'I', 'D', '3', 3, 0, 0, 0x07, 0x7F, 0x7F, 0x76};
  mp3.resize((std::size_t{0x07} << 21 | 0x1FFFF6) + 10);
  const platform::SharedBytes shared = std::move(mp3);
  for (auto _ : state) benchmark::DoNotOptimize(editor.read(shared));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(shared.size()));
}
BENCHMARK(walkPadding);

}  // namespace
