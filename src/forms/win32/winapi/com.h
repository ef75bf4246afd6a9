#pragma once

#include <windows.h>

#include <atomic>
#include <utility>

#include <objbase.h>

namespace nqp::winapi {

// Owns one reference to a COM object. What a function hands out through Put() is taken over; what
// is given to Share() is counted once more.
template <class Interface>
class ComPtr {
public:
    ComPtr() = default;
    ComPtr(const ComPtr& other) : object_(other.object_) {
        if (object_ != nullptr) object_->AddRef();
    }
    ComPtr(ComPtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ComPtr& operator=(ComPtr other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~ComPtr() { Reset(); }

    static ComPtr Share(Interface* object) {
        ComPtr shared;
        shared.object_ = object;
        if (object != nullptr) object->AddRef();
        return shared;
    }

    static ComPtr Create(const CLSID& classId) {
        ComPtr made;
        CoCreateInstance(classId, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface),
                         made.PutVoid());
        return made;
    }

    // The same object by another interface; empty when it has none of that kind. The headers do not
    // tie every interface to its number: then the number is given.
    template <class Other>
    ComPtr<Other> As(const IID& id = __uuidof(Other)) const {
        ComPtr<Other> other;
        if (object_ != nullptr) object_->QueryInterface(id, other.PutVoid());
        return other;
    }

    Interface** Put() {
        Reset();
        return &object_;
    }
    void** PutVoid() { return reinterpret_cast<void**>(Put()); }

    void Reset() {
        if (Interface* old = std::exchange(object_, nullptr)) old->Release();
    }

    Interface* Get() const { return object_; }
    Interface* operator->() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }

private:
    Interface* object_ = nullptr;
};

// Base of the COM objects that are implemented here; made with MakeCom only.
template <class Interface>
class ComObject : public Interface {
public:
    ComObject() = default;
    ComObject(const ComObject&) = delete;
    ComObject& operator=(const ComObject&) = delete;
    virtual ~ComObject() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        if (object == nullptr) return E_POINTER;
        const bool known =
            IsEqualIID(id, __uuidof(IUnknown)) || IsEqualIID(id, __uuidof(Interface));
        *object = known ? static_cast<Interface*>(this) : nullptr;
        if (!known) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

private:
    std::atomic<ULONG> references_ = 0;
};

template <class Object, class... Args>
ComPtr<Object> MakeCom(Args&&... args) {
    return ComPtr<Object>::Share(new Object(std::forward<Args>(args)...));
}

// The thread's COM apartment, for as long as the object lives. A thread that already has another
// kind of apartment keeps it.
class ComApartment {
public:
    ComApartment() : entered_(SUCCEEDED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {}
    ComApartment(const ComApartment&) = delete;
    ComApartment& operator=(const ComApartment&) = delete;
    ~ComApartment() {
        if (entered_) CoUninitialize();
    }

private:
    bool entered_;
};

// Memory that a COM call allocated for its caller.
template <class T>
class TaskMemory {
public:
    TaskMemory() = default;
    TaskMemory(const TaskMemory&) = delete;
    TaskMemory& operator=(const TaskMemory&) = delete;
    ~TaskMemory() { CoTaskMemFree(memory_); }

    T** Put() { return &memory_; }
    T* Get() const { return memory_; }

private:
    T* memory_ = nullptr;
};

}  // namespace nqp::winapi
