// Sets a field to a text in many MP3 files, such as the album: set-field FIELD TEXT FILE...

#include <filesystem>
#include <iostream>
#include <variant>
#include <vector>

#include <QuillmarkKit/store/MP3TagStore.h>
#include <QuillmarkKit/transfer/TagApplier.h>

using namespace QuillmarkKit;

int main(int count, char** arguments) {
  const auto field = count > 3 ? fieldFromCliName(arguments[1]) : std::nullopt;
  const TextMember member = field ? stringKeyPath(*field) : nullptr;
  if (member == nullptr) {
    std::cerr << "Usage: set-field FIELD TEXT FILE..., for a field with a text\n";
    return 1;
  }
  // The tag set must have a value for each selected field: a field without one is removed from the files.
  TagSet tags;
  tags.*member = arguments[2];  // must be UTF-8
  const TagFields selected{*field};
  const std::vector<std::filesystem::path> files(arguments + 3, arguments + count);

  const LosslessTagStore store(true);
  const TagApplier applier(store);
  int status = 0;
  // The third argument would make it a dry run.
  for (const auto& [file, outcome] : applier.apply(tags, files, selected, false)) {
    if (const auto* failed = std::get_if<TagApplier::Failed>(&outcome)) {
      std::cout << failed->message << '\n';
      status = 2;
    } else {
      const bool isUpdated = std::holds_alternative<TagApplier::Updated>(outcome);
      std::cout << (isUpdated ? "updated " : "unchanged ") << file.string() << '\n';
    }
  }
  return status;
}
