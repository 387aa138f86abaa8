// Bounded text assembly for the writers: every writer appends into the
// caller's buffer while the text fits, counts the length it would need
// when it does not, and ends with the writers' return rule (0 when the
// text fits, else an emptied buffer and the size needed).  Internal.
#pragma once

#include "ko.h"

#include <cstring>

namespace ko::text {

class TextOut {
 public:
  // buf may be null or size 0: nothing is written and only the length is
  // counted.
  TextOut(char *buf, int size) : buf_(size > 0 ? buf : nullptr), size_(buf_ != nullptr ? size : 0) {
    if (buf_ != nullptr) buf_[0] = '\0';
  }

  // Appends n characters of s, or counts them once the text no longer fits.
  void put(const char *s, std::size_t n) {
    if (fits_ && len_ + n < static_cast<std::size_t>(size_)) {
      std::memcpy(buf_ + len_, s, n);
      buf_[len_ + n] = '\0';
    } else {
      fits_ = false;
    }
    len_ += n;
  }
  void put(const char *s) { put(s, std::strlen(s)); }
  void put(char c) { put(&c, 1); }

  // Lets `write(dst, room)` write a piece of text straight into the buffer
  // after `lead` (for instance a comma).  write follows the writers' rule:
  // 0 when its text fits in room (an empty text is no piece: the lead is
  // not kept), otherwise the size it needs.  Returns false when the piece
  // did not fit.
  template <class Write>
  bool put_piece(const char *lead, Write write) {
    std::size_t lead_len = std::strlen(lead);
    std::size_t at = len_ + lead_len;
    bool room_left = fits_ && at < static_cast<std::size_t>(size_);
    char *dst = room_left ? buf_ + at : nullptr;
    int room = room_left ? static_cast<int>(static_cast<std::size_t>(size_) - at) : 0;
    int needed = write(dst, room);
    if (needed == 0) {
      std::size_t n = dst != nullptr ? std::strlen(dst) : 0;
      if (n == 0) return true;  // nothing written: keep the text as it was
      std::memcpy(buf_ + len_, lead, lead_len);
      len_ = at + n;
      return true;
    }
    if (buf_ != nullptr && fits_) buf_[len_] = '\0';
    fits_ = false;
    len_ = at + static_cast<std::size_t>(needed - 1);
    return false;
  }

  std::size_t length() const { return len_; }
  bool fits() const { return fits_; }

  // The writers' result: 0 when the whole text fits, else the buffer is
  // emptied and the size it would need (length plus terminator) returned.
  int finish() {
    if (fits_ || len_ == 0) return 0;  // an empty text needs no buffer
    if (buf_ != nullptr) buf_[0] = '\0';
    return static_cast<int>(len_ + 1);
  }

 private:
  char *buf_;
  int size_;
  std::size_t len_ = 0;
  bool fits_ = true;
};

}  // namespace ko::text
