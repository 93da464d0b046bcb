#pragma once

#include <string>

namespace quillon {

class AtscCVCT;
class AtscDCCSCT;
class AtscDCCT;
class AtscEIT;
class AtscETT;
class AtscMGT;
class AtscRRT;
class AtscSTT;
class AtscTVCT;
class PmtATSC;

namespace app {

// What the reports of ATSC tables leave out: names and texts, codes with what they mean, times as dates, and
// the descriptors. Lines of UTF-8, indented by two blanks a level; characters that steer a terminal are
// blanks.
std::string details_of(const PmtATSC& pmt);
std::string details_of(const AtscMGT& mgt);
std::string details_of(const AtscTVCT& vct);
std::string details_of(const AtscCVCT& vct);
std::string details_of(const AtscEIT& eit);
std::string details_of(const AtscETT& ett);
std::string details_of(const AtscSTT& stt);
std::string details_of(const AtscRRT& rrt);
std::string details_of(const AtscDCCT& dcct);
std::string details_of(const AtscDCCSCT& dccsct);

}  // namespace app
}  // namespace quillon
