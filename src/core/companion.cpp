#include "core/companion.h"

namespace nqp::core {

std::vector<CompanionMember> MembersInOrder(const FragmentJob& job) {
    using namespace companion_member;
    std::vector<CompanionMember> members = {{kMode, static_cast<std::int32_t>(job.mode)}};
    if (job.mode == JobMode::VideoWithPicture) {
        members.push_back({kImageX, job.picture.x});
        members.push_back({kImageY, job.picture.y});
        members.push_back({kImagePath, job.picture.path});
    }
    members.push_back({kPercentage, job.percentage});
    members.push_back({kStatusFile, job.statusFile});
    members.push_back({kCancelFile, job.cancelFile});
    members.push_back({kOutputFile, job.outputFile});
    members.push_back({kSourceFile, job.sourceFile});
    members.push_back({kFragmentStart, job.begin});
    members.push_back({kFragmentEnd, job.end});
    return members;
}

}  // namespace nqp::core
