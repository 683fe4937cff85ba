// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstddef>
#include <utility>

namespace platform {

/// How many share a content, who may be in several threads.
class SharedOwners {
  public:
    void add() { count_.fetch_add(1, std::memory_order_relaxed); }
    /// Whether it was the last one.
    bool remove() {
        // Who alone has it needs to come to terms with nobody, which is dearer.
        return isOne() || count_.fetch_sub(1, std::memory_order_acq_rel) == 1;
    }
    /// What others did with the content before they let go of it has happened then.
    bool isOne() const { return count_.load(std::memory_order_acquire) == 1; }

  private:
    std::atomic<std::size_t> count_ = 1;
};

/// What several values hold together, beside the count of its owners.
template <class T>
struct SharedContent : SharedOwners {
    explicit SharedContent(T given) : content(std::move(given)) {}

    T content;
};

/// Content that copies of this share, in the space of one pointer. Empty unless it is made of some. Nobody
/// changes content that is shared, so several threads can read it, each through copies of its own.
template <class T>
class Shared {
  public:
    Shared() = default;
    explicit Shared(T content) : content_(new SharedContent<T>(std::move(content))) {}
    Shared(const Shared& other) : content_(other.content_) {
        if (content_ != nullptr) content_->add();
    }
    Shared(Shared&& other) noexcept : content_(std::exchange(other.content_, nullptr)) {}
    Shared& operator=(Shared other) noexcept {
        std::swap(content_, other.content_);
        return *this;
    }
    ~Shared() {
        if (content_ != nullptr && content_->remove()) delete content_;
    }

    /// Null when it is empty.
    const T* get() const { return content_ == nullptr ? nullptr : &content_->content; }
    const T& operator*() const { return content_->content; }
    const T* operator->() const { return &content_->content; }
    explicit operator bool() const { return content_ != nullptr; }

    /// The content for changing it: made first when there is none, copied first when others have it too.
    T& own() {
        if (content_ == nullptr) {
            *this = Shared(T());
        } else if (!content_->isOne()) {
            *this = Shared(T(content_->content));
        }
        return content_->content;
    }

  private:
    SharedContent<T>* content_ = nullptr;
};

}  // namespace platform
