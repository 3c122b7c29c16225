// Numbers as text, the same in every locale.
#pragma once

#include <string>

namespace scriptwells {

// The fewest digits that read back to the same number of its type; "NaN", "INF", "-INF".
std::string NumberText(double value);
std::string NumberText(float value);

// With at most 6 significant digits, as numbers are sent: "1.23457e+06".
std::string SixDigits(double value);

// Whether six digits read back as another number. False for NaN and infinities.
bool LosesDigits(double value);
bool LosesDigits(float value);

}  // namespace scriptwells
