#pragma once

namespace ov {

/// Base of classes that own something which must not be copied.
class noncopyable {
  public:
    noncopyable() = default;
    noncopyable(const noncopyable&) = delete;
    noncopyable& operator=(const noncopyable&) = delete;

  protected:
    ~noncopyable() = default;
};

/// Base of classes whose address others keep.
class nonmoveable {
  public:
    nonmoveable() = default;
    nonmoveable(nonmoveable&&) = delete;
    nonmoveable& operator=(nonmoveable&&) = delete;

  protected:
    ~nonmoveable() = default;
};

}  // namespace ov
