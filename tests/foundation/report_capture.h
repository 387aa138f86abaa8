// Test helper: records every report that reaches the message callback while
// it is alive, and removes the callback again when it goes.
#pragma once

#include "ko.h"

#include <vector>

namespace ko::test {

class ReportCapture {
 public:
  ReportCapture(int severity_mask = KO_SEV_INFO | KO_SEV_WARNING | KO_SEV_ERROR, int category_mask = 127) {
    ko_msg_setrtn(this, severity_mask, category_mask, &ReportCapture::record);
  }
  ~ReportCapture() { ko_msg_setrtn(nullptr, 0, 0, nullptr); }
  ReportCapture(const ReportCapture &) = delete;
  ReportCapture &operator=(const ReportCapture &) = delete;

  const std::vector<ko_err> &reports() const { return reports_; }

 private:
  static void record(void *self, const ko_err *report) {
    static_cast<ReportCapture *>(self)->reports_.push_back(*report);
  }
  std::vector<ko_err> reports_;
};

}  // namespace ko::test
