#pragma once

#include <cstdint>
#include <string>

// What a fragment job is made of. No window.
namespace nqp::fragments {

// One end of a fragment as its three fields show it: two digits each, as a rule.
struct Bound {
    std::string hours = "00";
    std::string minutes = "00";
    std::string seconds = "00";
    bool operator==(const Bound&) const = default;
};

enum class BoundPart { Hours, Minutes, Seconds };
enum class BoundEnd { Begin, End };

// The begin and the end of the fragment that is to be cut. An empty field counts as 0; a field that
// holds another text than a number makes every operation that reads it throw std::runtime_error,
// which leaves both bounds as they were.
class FragmentBounds {
public:
    Bound begin;
    Bound end;
    bool operator==(const FragmentBounds&) const = default;

    // A person has left a field. What is out of its range, or behind the end of the clip (whole
    // seconds), is set back; afterwards the end does not lie before the begin.
    void Leave(BoundEnd which, BoundPart part, std::int32_t clipSeconds);

    // Puts the present position (whole seconds) into one of the bounds, and moves the other one
    // there when it would lie on the wrong side. Without a clip's title the fields of the bound
    // itself are left as they are.
    void MarkBegin(std::int32_t position, bool clipHasTitle);
    void MarkEnd(std::int32_t position, bool clipHasTitle);

    std::int32_t BeginSeconds() const;
    std::int32_t EndSeconds() const;
};

}  // namespace nqp::fragments
