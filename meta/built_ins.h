// What every process starts with: the built-in attributes and the built-in types.
// What an application adds to them comes from its builder.
#pragma once

namespace kelm {

class meta_model_impl;

/// Registers attributes 0 to 17 and 19 in the table of the process.
void add_built_in_attributes();

/// Adds the types 3, 1, 2 and 49999 with their properties, compositions and hooks.
void add_built_in_types(meta_model_impl& to);

} // namespace kelm
