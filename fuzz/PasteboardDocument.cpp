#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include "QuillmarkKit/transfer/TagClipboard.h"
#include "fuzz/FuzzTarget.h"
#include "platform/FileError.h"
#include "platform/JSON.h"

namespace TagClipboard = QuillmarkKit::TagClipboard;
using platform::Pasteboard;

namespace {

std::optional<QuillmarkKit::TagSet> pasteIfReadable(const Pasteboard& pasteboard) {
  try {
    return TagClipboard::paste(pasteboard);
  } catch (const platform::JSON::DecodingError&) {
    return std::nullopt;
  } catch (const platform::FileError&) {
    return std::nullopt;
  } catch (const TagClipboard::ClipboardError&) {
    return std::nullopt;
  }
}

/// A home folder for as long as the process runs, with a folder for the store in it.
class Home {
 public:
  Home() {
    std::string name = std::filesystem::temp_directory_path() / "quillmark-fuzz-XXXXXX";
    require(::mkdtemp(name.data()) != nullptr, "there is room for a folder");
    path = name;
    std::filesystem::create_directories(store().parent_path());
    std::filesystem::permissions(store().parent_path(), std::filesystem::perms::owner_all);
  }
  ~Home() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }
  Home(const Home&) = delete;
  Home& operator=(const Home&) = delete;

  std::filesystem::path store() const { return path / ".local/state/quillmark/pasteboard"; }

  std::filesystem::path path;
};

}  // namespace

void fuzzTarget(const platform::SharedBytes& input) {
  static const Home home;
  Pasteboard pasteboard(home.path);

  std::ofstream(home.store(), std::ios::binary) << platform::charactersOf(input);
  if (pasteIfReadable(pasteboard)) require(TagClipboard::hasTags(pasteboard), "tags come from a document");

  const std::string type(TagClipboard::pasteboardType);
  pasteboard.clearContents();
  pasteboard.declareTypes({type});
  require(pasteboard.setData(input, type), "the pasteboard takes any bytes");
  const auto data = pasteboard.data(type);
  require(data && platform::charactersOf(*data) == platform::charactersOf(input), "and gives them back");
  const auto pasted = pasteIfReadable(pasteboard);
  if (!pasted) return;
  TagClipboard::copy(*pasted, pasteboard);
  require(TagClipboard::paste(pasteboard) == pasted, "and pasted as they were");
}
