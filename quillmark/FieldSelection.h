#pragma once

#include <string_view>

#include "QuillmarkKit/model/TagField.h"
#include "quillmark/Arguments.h"

namespace quillmark {

/// The fields that a comma-separated list names by either of their names. Throws CLIError for the first name
/// of none.
QuillmarkKit::TagFields fieldsNamed(std::string_view list);

/// What paste and apply write: the fields of `--fields`, else with `--all` every field, else the album
/// identity. Throws CLIError for a name of no field.
QuillmarkKit::TagFields fieldMask(const Arguments& from);

}  // namespace quillmark
