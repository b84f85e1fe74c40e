#pragma once

#include <memory>

#include "QuillmarkKit/store/TagStore.h"
#include "quillmark/Arguments.h"
#include "quillmark/Console.h"

namespace quillmark {

/// The store that the options choose. What it loses goes to the console as notes, where these are wanted; the
/// console must outlive the store.
std::unique_ptr<const QuillmarkKit::TagStore> storeFor(const Arguments& arguments, Console& console);

}  // namespace quillmark
