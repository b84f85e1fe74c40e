#pragma once

#include <filesystem>
#include <memory>

#include "QuillmarkKit/store/MP3TagStore.h"
#include "quillmark/Arguments.h"
#include "quillmark/Console.h"

namespace quillmark {

/// Returns the store that the options choose.
std::unique_ptr<const QuillmarkKit::MP3TagStore> storeFor(const Arguments& arguments);

/// Returns a store that gives files the whole tag of `source`. Throws as the store does.
std::unique_ptr<const QuillmarkKit::TagStore> wholeTagStore(const Arguments& arguments,
                                                            const std::filesystem::path& source);

struct SourceOptions {
  /// Whether values that no field can hold are part of the result instead of an error.
  bool acceptsUnrepresentable = false;
};

/// Reads the tags of `from` to write `fields` of them into other files, and prints a note about values that
/// are read otherwise than they were meant. Throws as the store does.
QuillmarkKit::TagStore::Source readSource(const QuillmarkKit::TagStore& store,
                                          const std::filesystem::path& from, QuillmarkKit::TagFields fields,
                                          Console& console, SourceOptions options = {});

}  // namespace quillmark
