// Lists the tags of MP3 files: list-tags FILE...

#include <exception>
#include <iostream>

#include <QuillmarkKit/store/MP3TagStore.h>

using namespace QuillmarkKit;

int main(int count, char** arguments) {
  // Of a store that only reads, the modification date does not matter.
  const LosslessTagStore store(true);
  int status = 0;
  for (int i = 1; i < count; ++i) {
    try {
      const TagSet tags = store.read(arguments[i]);
      std::cout << arguments[i] << '\n';
      for (const TagField field : allTagFields) {
        const auto value = tags.value(field);
        if (value) std::cout << "  " << displayName(field) << ": " << *value << '\n';
      }
    } catch (const std::exception& error) {
      std::cerr << error.what() << '\n';
      status = 1;
    }
  }
  return status;
}
