// Tokens as people read them: with the marks of "show" around them, and back.
#ifndef MLDS_RULES_SHOWN_H
#define MLDS_RULES_SHOWN_H

#include <string>
#include <string_view>
#include <vector>

#include "mlds/rules/model.h"

namespace mlds::rules {

/// Tokens read from a text such as "k 'e s o".
struct ShownText {
    std::vector<Piece> pieces;
    /// Empty if all could be read; else what is wrong, and where (in characters, from 1).
    std::string fault;
    int column = 1;
    int length = 1;
};

/// Reads tokens of a tier, one blank or more between them. A mark of "show" around a token sets the
/// fields that its condition asks to be equal to something.
ShownText ReadShown(const Model& model, TierId tier, std::string_view text);

}  // namespace mlds::rules

#endif
