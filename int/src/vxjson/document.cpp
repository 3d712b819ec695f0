#include "vxjson/document.h"

namespace vxjson {

Document::Document(char const * data, std::size_t size)
    : m_tokenizer(data, size), m_reader(m_tokenizer) {}

Document::Document(char const * data, std::size_t size, Options const & options)
    : m_tokenizer(data, size, options.tokenizer), m_reader(m_tokenizer, options.reader) {}

Document::Document(vxcore::IReadStream & stream) : m_tokenizer(stream), m_reader(m_tokenizer) {}

Document::Document(vxcore::IReadStream & stream, Options const & options)
    : m_tokenizer(stream, options.tokenizer), m_reader(m_tokenizer, options.reader) {}

Document::~Document() = default;

} // namespace vxjson
