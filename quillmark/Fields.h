#pragma once

#include <string_view>
#include <vector>

#include "QuillmarkKit/model/TagField.h"
#include "quillmark/Arguments.h"

namespace quillmark {

/// Returns the fields that a comma-separated list names by either of their names, each once, in the list's
/// order. Throws CLIError for the first name that no field has.
std::vector<QuillmarkKit::TagField> fieldsInOrder(std::string_view list);
/// Returns the same fields as a selection.
QuillmarkKit::TagFields fieldsNamed(std::string_view list);

/// Returns the fields that paste and apply write: those of `--fields`, else with `--all` every field, else
/// the album identity. Throws CLIError for the first name that no field has.
QuillmarkKit::TagFields fieldMask(const Arguments& from);

}  // namespace quillmark
