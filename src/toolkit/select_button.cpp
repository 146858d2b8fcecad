// SelectButton: opening, closing and choosing, and the sorting of the entries.
#include "toolkit/select_button.h"

#include <algorithm>
#include <utility>
#include <vector>

SelectButton::SelectButton(Window* parent, float x, float y, float width, float height, std::string value)
    : Window(parent, x, y, width, height, std::move(value)) {
    button = new Button(this, "", 0, 0, width, height, "");
    button->leftClickHandler.bind(this, &SelectButton::openList);
    list = new Window(this, 0, height, width, 0, "");
    list->visible = false;
}

int SelectButton::openList(Window*) {
    button->leftClickHandler.bind(this, &SelectButton::closeList);
    list->visible = true;
    // The hit test only goes down into a window where the window itself is hit, so the list's
    // rectangle must be part of this one; and in front of the siblings, so that it takes the clicks.
    height += list->height;
    raise();
    return 0;
}

int SelectButton::closeList(Window*) {
    button->leftClickHandler.bind(this, &SelectButton::openList);
    list->visible = false;
    height = button->height;
    return 0;
}

int SelectButton::choose(Window* sender) {
    auto* entry = dynamic_cast<Button*>(sender);
    if (!entry) return 0;
    std::swap(entry->caption, button->caption);
    std::swap(entry->value, button->value);
    closeList(this);
    sortEntries();
    return selectHandler(button);
}

Button* SelectButton::addEntry(std::string caption, std::string value) {
    // An empty value means no choice yet, whatever the caption says.
    if (button->value.empty()) {
        button->caption = std::move(caption);
        button->value = std::move(value);
        return button;
    }
    float h = button->height;
    float row = static_cast<float>(list->children.size());
    auto* entry = new Button(list, std::move(caption), 0, row * h, width, h, std::move(value));
    entry->leftClickHandler.bind(this, &SelectButton::choose);
    list->height += h;
    sortEntries();
    return entry;
}

void SelectButton::select(std::string value) {
    for (Window* child : list->children) {
        auto* entry = dynamic_cast<Button*>(child);
        if (entry && entry->value == value) {
            std::swap(entry->caption, button->caption);
            std::swap(entry->value, button->value);
            sortEntries();
            return;
        }
    }
}

void SelectButton::sortEntries() {
    std::vector<Button*> entries;
    std::vector<std::string> keys;
    for (Window* child : list->children)
        if (auto* entry = dynamic_cast<Button*>(child)) {
            entries.push_back(entry);
            keys.push_back(entry->caption + "|" + entry->value);
        }
    // Byte order; a caption that holds a "|" is split at the wrong place on the way back.
    std::sort(keys.begin(), keys.end());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        std::size_t bar = keys[i].find('|');
        entries[i]->caption = keys[i].substr(0, bar);
        entries[i]->value = keys[i].substr(bar + 1);
    }
}
