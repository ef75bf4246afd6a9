#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <utility>

#include "forms/control.h"

namespace nqp::forms {

// Controls of one kind that share their name and their handlers, which get the index (from 0).
// The ids run on from the first one's.
template <class Kind, std::size_t Count>
class ControlArray {
public:
    using BoundsOf = base::Rect (*)(int index);

    ControlArray(Form& form, const std::string& name, int firstId, BoundsOf boundsOf)
        : ControlArray(form, name, firstId, boundsOf, std::make_index_sequence<Count>()) {}

    base::Event<int> Click;
    base::Event<int, const base::MouseEvent&> MouseMove;

    Kind& operator[](int index) { return elements_[static_cast<std::size_t>(index)].control; }
    static constexpr int Size() { return static_cast<int>(Count); }

private:
    struct Element {
        ControlArray* array;
        int index;
        Kind control;

        void Element_Click() { array->Click(index); }
        void Element_MouseMove(const base::MouseEvent& mouse) { array->MouseMove(index, mouse); }
    };

    template <std::size_t... Indices>
    ControlArray(Form& form, const std::string& name, int firstId, BoundsOf boundsOf,
                 std::index_sequence<Indices...>)
        : elements_{Element{
              this, static_cast<int>(Indices),
              Kind(form, name + "(" + std::to_string(Indices) + ")",
                   firstId + static_cast<int>(Indices), boundsOf(static_cast<int>(Indices)))}...} {
        for (Element& element : elements_) {
            element.control.Click.template calls<&Element::Element_Click>(&element);
            element.control.MouseMove.template calls<&Element::Element_MouseMove>(&element);
        }
    }

    std::array<Element, Count> elements_;
};

}  // namespace nqp::forms
