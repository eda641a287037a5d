#pragma once

// A growable byte buffer that can also work on storage of somebody else ("borrowed"), which it
// never reallocates or frees: a request for more room than there is fails.
//
// Owned storage comes from realloc, goes to free, and begins as a NUL byte. Nothing throws: a
// failed allocation shows in the results, and the data stays or is cut as each operation says.
// Bytes that are handed in may lie in the object's own buffer. The order of the virtual operations
// and of the fields is a binary contract.
//
// Threads: an object is used by one thread at a time; different objects are independent.
class ZuData {
 public:
  ZuData() = default;
  // `n` bytes of room, no data; no buffer at all if they can't be had.
  explicit ZuData(unsigned long n);
  // The data of `o` in a buffer of exactly its size.
  ZuData(const ZuData& o);
  // Borrows `buf`, which must outlive this object's use of it.
  ZuData(void* buf, unsigned long bufferSize, unsigned long dataSize);
  virtual ~ZuData();
  ZuData& operator=(const ZuData& o);

  // Sets the number of bytes in use if the buffer has as many. Gives the data size as it then is.
  virtual unsigned long SetUsableDataSize(unsigned long n);
  virtual unsigned long GetUsableDataSize() const;
  // Makes room for `n` bytes, rounded up when a buffer grows, and gives back room that is 32 bytes
  // or more too much (`n` 0: the whole buffer). False, with nothing changed, if that can't be done.
  virtual bool SetBufferSize(unsigned long n);
  // Hands the buffer out: owned storage is then the caller's, to be released with free. Either
  // pointer may be null.
  virtual void* ReleaseBuffer(unsigned long* dataSize, unsigned long* bufferSize);
  // Drops the data and the buffer.
  virtual void ReleaseData();
  // Drops the data, keeps the buffer.
  virtual void Clear();

  // Whether size and bytes are the same.
  virtual bool Equals(const ZuData& o) const;
  virtual bool Equals(const char* p, unsigned long n) const;

  // Takes the data of `o` over; leaves everything as it was if there is no room. Gives the data
  // size.
  virtual unsigned long SetEqualTo(const ZuData& o);
  // Takes `n` bytes over, in a buffer of at least `minSize`; cut if the buffer can't grow, so that
  // the room asked for beyond `n` remains. A null `src` sets the size alone. Gives the data size.
  virtual unsigned long SetEqualTo(const void* src, unsigned long n, unsigned long minSize);

  // Copies at most `count` bytes from `start`, the whole data where none are given; `start` must
  // not exceed the data size. Those to memory give the number of bytes copied, 0 for a null `dst`.
  virtual void Copy(ZuData& out, unsigned long start, unsigned long count) const;
  virtual unsigned long Copy(unsigned char* dst, unsigned long dstSize) const;
  virtual unsigned long Copy(unsigned char* dst, unsigned long dstSize, unsigned long start,
                             unsigned long count) const;

  // Replaces the `count` bytes from `pos` (cut to what is there) by others; the last form by the
  // decimal digits of `v`. A null `src` makes room alone. False, with nothing changed, if there is
  // no room; data that is still empty is set as by SetEqualTo, and false then says it was cut.
  virtual bool Replace(unsigned long pos, unsigned long count, const ZuData& d);
  virtual bool Replace(unsigned long pos, unsigned long count, const void* src, unsigned long n);
  virtual bool Replace(unsigned long pos, unsigned long count, unsigned char c);
  virtual bool Replace(unsigned long pos, unsigned long count, long v);

  unsigned long GetDataSize() const { return dataSize; }
  unsigned long GetBufferSize() const { return bufferSize; }
  // The buffer, null if there is none. Lent until the buffer is changed.
  unsigned char* GetBuffer() const { return buffer; }
  // Whether the storage is somebody else's, and so can't grow.
  bool IsBorrowed() const { return borrowed; }
  // As SetUsableDataSize of this class, for derived ones too.
  unsigned long SetDataSize(unsigned long n);
  // Exchanges data and storage; not for texts whose storage is inside the object.
  void Swap(ZuData& o) noexcept;
  // Releases the data and borrows `buf`.
  void SetBuffer(void* buf, unsigned long bufferSize, unsigned long dataSize);
  // Byte `i`, or a dummy byte that all objects share if `i` isn't within the data.
  unsigned char& operator[](unsigned long i) const;

 protected:
  void Adopt(void* buf, unsigned long bufferSize, unsigned long dataSize);
  // Whether `p` points into the buffer.
  bool Holds(const void* p) const;

  unsigned char* buffer = nullptr;
  unsigned long dataSize = 0;
  unsigned long bufferSize = 0;
  bool borrowed = false;

 private:
  bool ReplaceBytes(unsigned long pos, unsigned long count, const void* src, unsigned long n);
};
