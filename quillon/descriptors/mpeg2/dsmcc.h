#pragma once

#include <quillon/descriptors/descriptor_base.h>

namespace quillon {

// Identifies an object carousel (ISO/IEC 13818-6; TS 102 812, B.2.8). The fields from ModuleVersion to
// ObjectKeyData are there for FormatId 1 alone; with any other the private bytes follow FormatId, which is
// read even where the body ends before it.
class QUILLON_API DescriptorCarouselId final : public DescriptorBase {
 public:
  DescriptorCarouselId() = default;
  explicit DescriptorCarouselId(ByteView d);

  QUILLON_FIELD(uint32_t, carousel_id, get_carousel_id);
  QUILLON_FIELD(int, formatid, get_formatid);
  QUILLON_FIELD(int, moduleversion, get_moduleversion);
  QUILLON_FIELD(int, moduleid, get_moduleid);
  QUILLON_FIELD(int, blocksize, get_blocksize);
  QUILLON_FIELD(uint32_t, modulesize, get_modulesize);
  QUILLON_FIELD(int, compressionmethod, get_compressionmethod);
  QUILLON_FIELD(uint32_t, originalsize, get_originalsize);
  QUILLON_FIELD(int, timeout, get_timeout);
  QUILLON_FIELD(int, objectkeylength, get_objectkeylength);
  QUILLON_FIELD(std::vector<uint8_t>, objectkeydata, get_objectkeydata);
  QUILLON_FIELD(std::vector<uint8_t>, private_data_byte, get_private_data_byte);

  QUILLON_FACES(objectkeydata_, private_data_byte_);
};

// Binds an association tag to a stream (ISO/IEC 13818-6, 11.4.1).
class QUILLON_API DescriptorAssociationTag final : public DescriptorBase {
 public:
  DescriptorAssociationTag() = default;
  // Throws error(error::length_mismatch, "association_tag_descriptor:selector_length") unless selector_length
  // is 8 for use 0, and 0 for use 1.
  explicit DescriptorAssociationTag(ByteView d);

  QUILLON_FIELD(int, association_tag, get_association_tag);
  QUILLON_FIELD(int, use, get_use);
  QUILLON_FIELD(int, selector_length, get_selector_length);
  QUILLON_FIELD(uint32_t, transaction_id, get_transaction_id);            // use 0
  QUILLON_FIELD(uint32_t, timeout, get_timeout);                          // use 0
  QUILLON_FIELD(std::vector<uint8_t>, selector_byte, get_selector_byte);  // neither use 0 nor 1
  QUILLON_FIELD(std::vector<uint8_t>, private_data_byte, get_private_data_byte);

  QUILLON_FACES(selector_byte_, private_data_byte_);
};

}  // namespace quillon
