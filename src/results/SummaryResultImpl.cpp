#include "SummaryResultImpl.h"

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>
#include <boost/system/error_code.hpp>
#include <string_view>
#include <utility>

#include "DetailOrder.h"

namespace kelvar_2_1_7 {

namespace {

constexpr std::string_view kSubResult = "surveyvectorization";

/// The directory that holds a result: its path, or for a sub-result the path up to the separator before its name.
/// A path that is nothing but the name stays: what would be cut lies before its beginning.
std::string directoryOf(const std::string& resultPath) {
  const std::size_t position = resultPath.find(kSubResult);
  const bool isSubResult = position != std::string::npos && position == resultPath.size() - kSubResult.size();
  return isSubResult ? resultPath.substr(0, position - 1) : resultPath;
}

std::string textOrEmpty(const char* text) {
  return text != nullptr ? text : "";
}

std::uint64_t duration(std::uint64_t start, std::uint64_t end) {
  return end != 0 ? end - start : 0;
}

/// The path of a log, if the file is there. A path that cannot even be tested is that of no file.
std::string existingLog(resdir::IResultDirectory& directory, std::string (resdir::IResultDirectory::*logPath)()) {
  const std::string path = (directory.*logPath)();
  boost::system::error_code untestable;
  // The file system would stop at a zero byte, and test another name.
  const bool exists = path.find('\0') == std::string::npos && boost::filesystem::exists(path, untestable);
  return exists ? (directory.*logPath)() : std::string();
}

}  // namespace

SummaryResultImpl::SummaryResultImpl(SummaryData::Impl* owner, std::string resultPath, RecordedSites* recorded) {
  if (resultPath.empty()) return;
  const toolbelt::sptr_t<resdir::IResultDirectory> directory =
      resdir::ResultDirectoryManager::open(directoryOf(resultPath).c_str(), false, nullptr);
  if (!directory) return;
  collection_.reset(digestio::SummaryCollection::load(resultPath));
  if (!collection_) return;
  readMetadata(*directory);

  const digestio::SummaryDataKind kind = collection_->dataKind();
  for (const digestio::SummaryDataKind known : kAllKinds) carries_[known] = known == kind;
  addDetails(owner);
  if (recorded != nullptr) {
    recorded->read();
    sites_.add(*recorded, carries_);
  }
  sites_.fold(kind);
  loaded_ = true;
}

SummaryResultImpl::~SummaryResultImpl() {
  sites_ = ResultSites();  // items point to details of the collection
  collection_.reset();
}

void SummaryResultImpl::readMetadata(resdir::IResultDirectory& directory) {
  collectionTime_ = directory.collectionStartTime();
  collectionDuration_ = duration(collectionTime_, directory.collectionEndTime());
  finalizationTime_ = directory.finalizationStartTime();
  finalizationDuration_ = duration(finalizationTime_, directory.finalizationEndTime());
  hostName_ = textOrEmpty(directory.hostName());
  cpuCount_ = directory.cpuCount();
  cpuFrequency_ = directory.cpuFrequency();
  operatingSystem_ = textOrEmpty(directory.operatingSystem(0));
  applicationLog_ = existingLog(directory, &resdir::IResultDirectory::applicationLogPath);
  collectorLog_ = existingLog(directory, &resdir::IResultDirectory::collectorLogPath);
  commandLog_ = existingLog(directory, &resdir::IResultDirectory::commandLogPath);
}

void SummaryResultImpl::addDetails(SummaryData::Impl* owner) {
  SummaryItems& items = sites_.items();
  for (digestio::SummaryDetail* const detail : detailsByPlace(*collection_)) {
    const bool isSite = detail == nullptr || detail->detailKind() == digestio::kAnnotatedSite;
    const SummaryItemImpl& item =
        isSite ? items.make(owner, detail, nullptr, 0UL) : items.makeLasting(owner, detail, nullptr, 0UL);
    for (const digestio::SummaryDataKind kind : kAllKinds) {
      if (item.hasDetail(kind)) carries_[kind] = true;
    }
  }
}

}  // namespace kelvar_2_1_7
