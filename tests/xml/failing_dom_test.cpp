// The attribute layer on a DOM that fails where its script says so.

#include "tests/support/bytes.h"
#include "tests/support/dom_base.h"
#include "tests/support/faces.h"
#include "tests/xml/nodes.h"

#include <quillon/xml/attributes.h>
#include <quillon/xml/internal/bstr.h>

using namespace quillon;
using namespace quillon::test;

namespace {

constexpr long kFail = -2147467259;

int objects = 0;  // those that are alive

// What a DOM object does by default: it counts its references, and refuses everything.
template <class Interface>
class FakeNode : public DomBase<Interface> {
 public:
  FakeNode() { ++objects; }
  FakeNode(const FakeNode&) = delete;
  FakeNode& operator=(const FakeNode&) = delete;

  HRESULT QueryInterface(REFIID, void** out) override { return *out = nullptr, E_NOINTERFACE; }
  unsigned long AddRef() override { return ++references_; }
  unsigned long Release() override {
    const unsigned long left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT get_nodeName(BSTR*) override { return E_FAIL; }
  HRESULT get_nodeValue(VARIANT*) override { return E_FAIL; }
  HRESULT put_nodeValue(VARIANT) override { return E_FAIL; }
  HRESULT get_attributes(IXMLDOMNamedNodeMap**) override { return E_FAIL; }
  HRESULT get_childNodes(IXMLDOMNodeList**) override { return E_FAIL; }
  HRESULT appendChild(IXMLDOMNode*, IXMLDOMNode**) override { return E_FAIL; }
  HRESULT selectSingleNode(BSTR, IXMLDOMNode**) override { return E_FAIL; }

 protected:
  virtual ~FakeNode() { --objects; }

 private:
  unsigned long references_ = 1;
};

// The results that the operations give, and the value that an attribute gives.
struct Script {
  HRESULT create = S_OK;
  HRESULT put = S_OK;
  HRESULT set = S_OK;
  HRESULT find = S_OK;
  HRESULT tell = S_OK;
  VARENUM told = VT_BSTR;
  std::string steps = {};  // those that were taken
  std::string value = {};  // the last that was put
};

std::string shown(const VARIANT& value) {
  switch (value.vt) {
    case VT_I4:
      return "I4 " + std::to_string(value.lVal);
    case VT_R8:
      return "R8 " + std::to_string(static_cast<int>(value.dblVal * 1000)) + "/1000";
    case VT_BSTR: {
      std::string out = "BSTR";
      for (unsigned i = 0; i < SysStringLen(value.bstrVal); ++i)
        out += " " + std::to_string(value.bstrVal[i]);
      return out;
    }
    default:
      return "?";
  }
}

class FakeAttribute : public FakeNode<IXMLDOMAttribute> {
 public:
  explicit FakeAttribute(Script& script) : script_(script) {}
  HRESULT put_nodeValue(VARIANT value) override {
    script_.value = shown(value);
    return script_.steps += "put ", script_.put;
  }
  HRESULT get_nodeValue(VARIANT* out) override {
    script_.steps += "tell ";
    out->vt = script_.told;
    if (out->vt == VT_BSTR) out->bstrVal = xml::try_make_text("12"_w, 2);
    if (out->vt == VT_I4) out->lVal = -12;
    if (out->vt == VT_R8) out->dblVal = 0.5;
    return script_.tell;
  }

 private:
  Script& script_;
};

class FakeDocument : public FakeNode<IXMLDOMDocument> {
 public:
  explicit FakeDocument(Script& script) : script_(script) {}
  HRESULT createElement(BSTR, IXMLDOMElement**) override { return E_FAIL; }
  HRESULT createAttribute(BSTR, IXMLDOMAttribute** out) override {
    script_.steps += "create ";
    if (script_.create >= 0) *out = new FakeAttribute(script_);
    return script_.create;
  }

 private:
  Script& script_;
};

// Hands out a node in the place of the attribute, as if that had been there before.
class FakeElement : public FakeNode<IXMLDOMElement> {
 public:
  explicit FakeElement(Script& script) : script_(script) {}
  HRESULT setAttributeNode(IXMLDOMAttribute*, IXMLDOMAttribute** out) override {
    script_.steps += "set ";
    if (script_.set >= 0 && out) *out = new FakeAttribute(script_);
    return script_.set;
  }

 private:
  Script& script_;
};

class FakeMap : public DomBase<IXMLDOMNamedNodeMap> {
 public:
  explicit FakeMap(Script& script) : script_(script) {}
  virtual ~FakeMap() = default;
  HRESULT QueryInterface(REFIID, void** out) override { return *out = nullptr, E_NOINTERFACE; }
  unsigned long AddRef() override { return 2; }
  unsigned long Release() override { return 1; }
  HRESULT getNamedItem(BSTR, IXMLDOMNode** out) override {
    script_.steps += "find ";
    *out = script_.find == S_OK ? new FakeAttribute(script_) : nullptr;
    return script_.find;
  }

 private:
  Script& script_;
};

// Every kind of value is added by the script; all must have the same result.
void expect_adding(Script script, long result, const std::string& steps) {
  auto* const document = new FakeDocument(script);
  auto* const element = new FakeElement(script);
  const auto add = [&](const auto&... value) {
    script.steps.clear();
    EXPECT_EQ(AddAttribute(document, element, "a", value...), result);
    EXPECT_EQ(script.steps, steps);
    EXPECT_EQ(objects, 2);  // nothing is kept
  };
  const uint8_t byte = 1;
  add(1);
  add(1ul);
  add(1u);
  add(byte);
  add(true);
  add(1.0);
  add(std::string("s"));
  add("s");
  add(Text());
  add(ISO639LanguageCode());
  add(MACAddress());
  add(IPv4Address());
  add(IPv6Address());
  add(&byte, 1);
  add(Bytes{1});
  add(std::vector<int>{1});
  add(std::vector<unsigned long>{1});
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_BSTR;
  value.bstrVal = xml::try_make_text("kept"_w, 4);
  add(value);
  EXPECT_EQ(SysStringLen(value.bstrVal), 4u);
  VariantClear(&value);
  element->Release();
  document->Release();
  EXPECT_EQ(objects, 0);
}

// The same for reading: the values are as they were where it fails.
void expect_getting(Script script, long result, const std::string& steps) {
  FakeMap map(script);
  const auto get = [&](auto&&... value) {
    script.steps.clear();
    EXPECT_EQ(GetAttributeValue(&map, "a", value...), result);
    EXPECT_EQ(script.steps, steps);
    EXPECT_EQ(objects, 0);
  };
  int i = 99;
  get(i);
  EXPECT_EQ(i, result == 0 ? 12 : 99);
  unsigned long ul = 99;
  get(ul);
  unsigned u = 99;
  get(u);
  unsigned char c = 99;
  get(c);
  bool b = true;
  get(b);
  EXPECT_EQ(b, result != 0);
  double d = 99;
  get(d);
  EXPECT_EQ(d, result == 0 ? 12 : 99);
  std::string s = "99";
  get(s);
  EXPECT_EQ(s, result == 0 ? "12" : "99");
  Text t;
  t.set_textA(0, "99");
  get(t);
  EXPECT_EQ(t.get_textA(), result == 0 ? "12" : "99");
  ISO639LanguageCode code;
  get(code);
  MACAddress mac;
  get(mac);
  IPv4Address v4;
  get(v4);
  IPv6Address v6;
  get(v6);
  EXPECT_EQ(v6.get_addr()[0], result == 0 ? 0x12 : 0);
  char text[] = "99";
  get(text, 3);
  EXPECT_STREQ(text, result == 0 ? "12" : "99");
  uint8_t byte = 0x99;
  get(&byte, 1);
  EXPECT_EQ(byte, result == 0 ? 0x12 : 0x99);
  Bytes bytes;
  get(bytes);
  EXPECT_EQ(bytes.size(), result == 0 ? 1u : 0u);
  std::vector<int> ints;
  get(ints);
  std::vector<unsigned long> longs;
  get(longs);
}

}  // namespace

TEST(AttributesOfAFailingDom, GiveTheOneFailureAtEachStep) {
  for (const HRESULT failure : {E_FAIL, E_OUTOFMEMORY, E_INVALIDARG, HRESULT{-1}}) {
    expect_adding({.create = failure}, kFail, "create ");
    expect_adding({.put = failure}, kFail, "create put ");
    expect_adding({.set = failure}, kFail, "create put set ");
    expect_getting({.find = failure}, kFail, "find ");
    expect_getting({.tell = failure}, kFail, "find tell ");
  }
}

TEST(AttributesOfAFailingDom, TakeAnyResultThatIsNotNegativeForSuccessInAddingAndOnlyOneInGetting) {
  for (const HRESULT success : {S_OK, S_FALSE, HRESULT{5}})
    expect_adding({.create = success, .put = success, .set = success}, 0, "create put set ");
  expect_getting({}, 0, "find tell ");
  for (const HRESULT other : {S_FALSE, HRESULT{5}}) {
    expect_getting({.find = other}, kFail, "find ");
    expect_getting({.tell = other}, kFail, "find tell ");
  }
}

TEST(AttributesOfAFailingDom, ReadAValueThatIsNoText) {
  Script script;
  FakeMap map(script);
  const auto told = [&](VARENUM type) {
    script.told = type;
    std::string text = "before";
    EXPECT_EQ(GetAttributeValue(&map, "a", text), 0);
    return text;
  };
  EXPECT_EQ(told(VT_I4), "-12");
  EXPECT_EQ(told(VT_R8), "0.5");
  EXPECT_EQ(told(VT_EMPTY), "");
  EXPECT_EQ(told(VT_BSTR), "12");
}

TEST(AttributesOfAFailingDom, RaiseAComErrorWhereAValueCannotBeConvertedOrCleared) {
  const auto raised = [](Script script) {
    FakeMap map(script);
    int value = 99;
    try {
      GetAttributeValue(&map, "a", value);
    } catch (const _com_error& e) {
      EXPECT_EQ(value, 99);
      EXPECT_EQ(objects, 0);
      return e.Error();
    }
    return S_OK;
  };
  const auto strange = static_cast<VARENUM>(77);
  EXPECT_EQ(raised({.told = strange}), DISP_E_BADVARTYPE);
  EXPECT_EQ(raised({.tell = E_FAIL, .told = strange}), DISP_E_BADVARTYPE);  // in clearing it
  EXPECT_EQ(raised({.told = VT_NULL}), DISP_E_BADVARTYPE);
  EXPECT_EQ(raised({.tell = E_FAIL, .told = VT_NULL}), S_OK);
}

TEST(AttributesOfAFailingDom, RaiseWhatIsAnErrorToo) {
  const auto text_of = [](Script script) {
    FakeMap map(script);
    int value = 0;
    return failure([&] { GetAttributeValue(&map, "a", value); });
  };
  const auto strange = static_cast<VARENUM>(77);
  EXPECT_EQ(text_of({.told = strange}), "-1: the value of an attribute is no text");
  EXPECT_EQ(text_of({.tell = E_FAIL, .told = strange}), "-1: the value of an attribute can't be released");
  // So it leaves a load as all that a load throws.
  Script script;
  script.told = strange;
  FakeMap map(script);
  int value = 0;
  EXPECT_THROW(GetAttributeValue(&map, "a", value), std::exception);
}

TEST(AttributesOfAnotherDom, ArePutAsVariants) {
  Script script;
  auto* const document = new FakeDocument(script);
  auto* const element = new FakeElement(script);
  const auto put = [&](const auto&... value) {
    EXPECT_EQ(AddAttribute(document, element, "a", value...), 0);
    return script.value;
  };
  EXPECT_EQ(put(-12), "I4 -12");
  EXPECT_EQ(put(0xFFFFFFFFul), "I4 -1");
  EXPECT_EQ(put(0xFFFFFFFEu), "I4 -2");
  EXPECT_EQ(put(static_cast<unsigned char>(255)), "I4 255");
  EXPECT_EQ(put(true), "I4 1");
  EXPECT_EQ(put(0.5), kSystemDom ? "BSTR 48 46 53" : "R8 500/1000");
  EXPECT_EQ(put("ab"), "BSTR 97 98");
  EXPECT_EQ(put(""), "BSTR");
  EXPECT_EQ(put("a\x80"), "BSTR 97 8364");  // the euro sign of page 1252
  EXPECT_EQ(put(std::string("a\0b", 3)), "BSTR 97");
  EXPECT_EQ(put(Bytes{0x0F, 0xA0}), "BSTR 48 102 97 48");
  Text text;
  EXPECT_EQ(put(text), "BSTR");
  text.parse(1, Bytes{'a'}.data());
  EXPECT_EQ(put(text), "BSTR 97");
  text.set_textW(0, u"\u0421b");
  EXPECT_EQ(put(text), "BSTR 1057 98");
  element->Release();
  document->Release();
  EXPECT_EQ(objects, 0);
}

TEST(AttributesOfAFailingDom, LeaveTheAttributesThatWereThere) {
  Script script{.create = E_FAIL};
  xml::Document document;
  auto* const root = static_cast<IXMLDOMElement*>(document.create_root("d"));
  EXPECT_EQ(AddAttribute(static_cast<IXMLDOMDocument*>(document.dom()), root, "a", 1), 0);
  auto* const failing = new FakeDocument(script);
  EXPECT_EQ(AddAttribute(failing, root, "b", 2), kFail);
  failing->Release();
  EXPECT_EQ(plain(document), R"(<d a="1" />)");
}
