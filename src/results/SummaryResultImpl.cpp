#include "SummaryResultImpl.h"

#include <boost/filesystem/operations.hpp>
#include <boost/filesystem/path.hpp>
#include <boost/system/error_code.hpp>
#include <string_view>
#include <utility>

#include "items/LiveAnnotations.h"

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

/// The path of a log, if the file is there. A path that cannot even be tested counts as that of no file.
template <class LogPath>
std::string existingLog(const LogPath& logPath) {
  const std::string path = logPath();
  boost::system::error_code untestable;
  // The file system would stop at a zero byte, and test another name.
  const bool exists = path.find('\0') == std::string::npos && boost::filesystem::exists(path, untestable);
  return exists ? logPath() : std::string();
}

}  // namespace

SummaryResultImpl::SummaryResultImpl(SummaryData::Impl* owner, std::string resultPath,
                                     boost::shared_ptr<sitenotes::database_t> database)
    : database_(std::move(database)) {
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
  addAnnotations(owner);
  items_.exactMerge(kind);
  loaded_ = true;
}

SummaryResultImpl::~SummaryResultImpl() {
  items_.clear();  // they point to details of the collection
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
  applicationLog_ = existingLog([&] { return directory.applicationLogPath(); });
  collectorLog_ = existingLog([&] { return directory.collectorLogPath(); });
  commandLog_ = existingLog([&] { return directory.commandLogPath(); });
}

void SummaryResultImpl::addDetails(SummaryData::Impl* owner) {
  // Their number may change while they are taken.
  for (int index = 0; index < collection_->detailCount(); ++index) {
    auto item = std::make_unique<SummaryItemImpl>(owner, collection_->detail(index), nullptr, 0UL);
    for (const digestio::SummaryDataKind kind : kAllKinds) {
      if (item->shows(kind)) carries_[kind] = true;
    }
    items_.append(std::move(item));
  }
  items_.sort(kSortLocator);  // annotations are usually sorted already: the fold then merges two sorted lists
}

void SummaryResultImpl::addAnnotations(SummaryData::Impl* owner) {
  forEachLiveAnnotation(database_, [&](boost::shared_ptr<sitenotes::annotation_t> annotation, unsigned long handle) {
    items_.append(std::make_unique<SummaryItemImpl>(owner, std::move(annotation), handle, kNoMatchCurrent,
                                                    carries_[kSurveyKind], carries_[kSuitabilityKind],
                                                    carries_[kCorrectnessKind], carries_[kMapKind]));
  });
}

}  // namespace kelvar_2_1_7
