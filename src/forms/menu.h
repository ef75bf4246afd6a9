#pragma once

#include <string>
#include <vector>

#include "base/event.h"

namespace nqp::forms {

class MenuItem;

// A menu that a window pops up at the pointer.
class Menu {
public:
    Menu(const std::string& name, const std::string& caption) : name_(name), caption_(caption) {}
    Menu(const Menu&) = delete;
    Menu& operator=(const Menu&) = delete;

    const std::string& Name() const { return name_; }
    const std::string& Caption() const { return caption_; }
    const std::vector<MenuItem*>& Items() const { return items_; }

private:
    friend class MenuItem;
    std::string name_;
    std::string caption_;
    std::vector<MenuItem*> items_;
};

class MenuItem {
public:
    MenuItem(Menu& menu, const std::string& name, const std::string& caption)
        : name_(name), caption_(caption) {
        menu.items_.push_back(this);
    }
    MenuItem(const MenuItem&) = delete;
    MenuItem& operator=(const MenuItem&) = delete;

    base::Event<> Click;

    const std::string& Name() const { return name_; }
    const std::string& Caption() const { return caption_; }
    // The mark before the caption; shown from the next time on that the menu pops up.
    bool Checked() const { return checked_; }
    void SetChecked(bool checked) { checked_ = checked; }

private:
    std::string name_;
    std::string caption_;
    bool checked_ = false;
};

}  // namespace nqp::forms
