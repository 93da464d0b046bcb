#pragma once

#include <utility>

namespace quillon::xml {

// Holds one reference to a DOM object.
template <class T>
class Ref {
 public:
  Ref() = default;
  // Takes a reference of its own.
  explicit Ref(T* object) : object_(object) {
    if (object_) object_->AddRef();
  }
  Ref(Ref&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  Ref& operator=(Ref&& other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Ref() {
    if (object_) object_->Release();
  }

  // For an operation that hands out a reference; null until then, whatever the operation does.
  T** out() {
    if (object_) std::exchange(object_, nullptr)->Release();
    return &object_;
  }
  T* get() const { return object_; }
  T* operator->() const { return object_; }
  explicit operator bool() const { return object_; }

 private:
  T* object_ = nullptr;
};

}  // namespace quillon::xml
