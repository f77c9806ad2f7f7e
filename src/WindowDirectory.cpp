#include "src/WindowDirectory.h"

#include <algorithm>
#include <utility>

namespace quillmark::lumen_deck {

struct WindowDirectory::Entry
{
    IGraphicsView* view = nullptr;
    IFisheyeOverlay* overlay = nullptr;
    Place place;
    int visits = 0;
};

WindowDirectory::Visit::Visit(WindowDirectory* directory, std::shared_ptr<Entry> entry)
    : directory_(directory)
    , entry_(std::move(entry))
{
}

WindowDirectory::Visit::~Visit()
{
    if (!entry_)
        return;
    const std::lock_guard lock(directory_->mutex_);
    if (--entry_->visits == 0)
        directory_->left_.notify_all();
}

// Both are fixed while a visit lives: remove and setOverlay wait for it.
IGraphicsView* WindowDirectory::Visit::view() const
{
    return entry_->view;
}

IFisheyeOverlay* WindowDirectory::Visit::overlay() const
{
    return entry_->overlay;
}

// Never destroyed: hooks may still run while the process exits.
WindowDirectory& WindowDirectory::instance()
{
    static auto* const directory = new WindowDirectory;
    return *directory;
}

void WindowDirectory::add(const QWidget* window, IGraphicsView* view)
{
    auto entry = std::make_shared<Entry>();
    entry->view = view;
    const std::lock_guard lock(mutex_);
    entries_[window] = std::move(entry);
}

void WindowDirectory::setOverlay(const QWidget* window, IFisheyeOverlay* overlay)
{
    std::unique_lock lock(mutex_);
    const std::shared_ptr<Entry> entry = find(window);
    if (!entry)
        return;
    waitUntilLeft(lock, *entry);
    entry->overlay = overlay;
}

void WindowDirectory::setPlace(const QWidget* window, Place place)
{
    const std::lock_guard lock(mutex_);
    if (const std::shared_ptr<Entry> entry = find(window))
        entry->place = place;
}

void WindowDirectory::remove(const QWidget* window)
{
    std::unique_lock lock(mutex_);
    const std::shared_ptr<Entry> entry = find(window);
    if (!entry)
        return;
    entries_.erase(window);
    waitUntilLeft(lock, *entry);
}

WindowDirectory::Visit WindowDirectory::visit(const void* window)
{
    const std::lock_guard lock(mutex_);
    std::shared_ptr<Entry> entry = find(window);
    if (entry)
        ++entry->visits;
    return {this, std::move(entry)};
}

WindowDirectory::Visit WindowDirectory::visit(const Place& place)
{
    const std::lock_guard lock(mutex_);
    const auto found = std::find_if(entries_.begin(), entries_.end(), [&](const auto& candidate) {
        const Place& stands = candidate.second->place;
        return stands.mainWidget == place.mainWidget && stands.index == place.index;
    });
    std::shared_ptr<Entry> entry = found != entries_.end() ? found->second : nullptr;
    if (entry)
        ++entry->visits;
    return {this, std::move(entry)};
}

std::optional<WindowDirectory::Place> WindowDirectory::place(const void* window) const
{
    const std::lock_guard lock(mutex_);
    const std::shared_ptr<Entry> entry = find(window);
    return entry ? std::optional(entry->place) : std::nullopt;
}

std::shared_ptr<WindowDirectory::Entry> WindowDirectory::find(const void* window) const
{
    const auto found = entries_.find(window);
    return found != entries_.end() ? found->second : nullptr;
}

void WindowDirectory::waitUntilLeft(std::unique_lock<std::mutex>& lock, const Entry& entry)
{
    left_.wait(lock, [&] { return entry.visits == 0; });
}

} // namespace quillmark::lumen_deck
