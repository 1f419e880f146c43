#include "ScreenUpdate.h"

#include "BundleWalk.h"

ScreenUpdate ScreenUpdate::of(std::string_view body) {
    ScreenUpdate update;
    BundleWalk walk(body);
    while (const auto item = walk.next())
        if (!update.add(item->code, item->data))
            return update;
    update.redraw = walk.atEnd();
    return update;
}

/// Whether the update goes on after this item.
bool ScreenUpdate::add(char code, std::string_view data) {
    switch (code) {
    case 'A':
        attributes = data;
        return true;
    case 'C':
        return true;
    case 'G':
        graphics = data;
        textMode = false;
        return true;
    case 'R':
        cursor = data;
        return true;
    case 'T':
        text = data;
        textMode = true;
        return true;
    default:
        return false;
    }
}
