#include "service.h"

#include <pybind11/stl.h>

#include <string>
#include <utility>
#include <vector>

#include "python_types.h"
#include "running_call.h"
#include "scriptwells/testing.h"

namespace scriptwells::python {

namespace {

namespace py = pybind11;
using Users = std::vector<std::pair<std::string, std::string>>;

// In the order of OrderedFault::Kind.
constexpr const char* kKinds[] = {"fault", "status", "cut", "silence"};

OrderedFault::Kind KindNamed(const std::string& name) {
  int at = 0;
  for (const char* kind : kKinds) {
    if (name == kind) return static_cast<OrderedFault::Kind>(at);
    ++at;
  }
  throw py::value_error("there is no kind of fault '" + name + "'; there are fault, status, cut, silence");
}

class ServiceHandle {
 public:
  ServiceHandle(const std::string& program, const Users& users) {
    ServiceOptions options;
    options.program = program;
    for (const auto& [user, password] : users) options.users.push_back({user, password});
    service_ = WithoutLock([&] { return std::make_unique<DevelopmentService>(options); });
  }
  ~ServiceHandle() { Close(); }
  ServiceHandle(const ServiceHandle&) = delete;
  ServiceHandle& operator=(const ServiceHandle&) = delete;

  void Close() {
    std::unique_ptr<DevelopmentService> ended = std::move(service_);
    const py::gil_scoped_release unlocked;
    ended.reset();
  }
  const DevelopmentService& Get() const {
    if (service_ == nullptr) throw py::value_error("the service has ended");
    return *service_;
  }
  py::list Requests() const {
    const DevelopmentService& service = Get();
    py::list list;
    for (const SeenRequest& seen : WithoutLock([&] { return service.Requests(); }))
      list.append(PythonTypes::Get().seenRequest(Text(seen.method), Text(seen.target), Text(seen.action),
                                                 py::bytes(seen.body)));
    return list;
  }
  std::map<std::string, std::int64_t> Counts() const {
    const DevelopmentService& service = Get();
    return WithoutLock([&] { return service.Counts(); });
  }
  void Order(const std::string& kind, std::uint32_t number, const std::string& text,
             const std::string& action) const {
    const OrderedFault fault{KindNamed(kind), number, text, action};
    Get();
    WithoutLock([&] { service_->Order(fault); });
  }
  void OrderOdd(const std::string& names, std::uint32_t requests, double chance, std::uint32_t seed,
                const std::string& action) const {
    const OddOrder order{names, requests, chance, seed, action};
    Get();
    WithoutLock([&] { service_->Order(order); });
  }

 private:
  std::unique_ptr<DevelopmentService> service_;
};

}  // namespace

void DefineService(py::module_& module) {
  py::class_<ServiceHandle>(module, "Service")
      .def(py::init<const std::string&, const Users&>())
      .def("close", &ServiceHandle::Close)
      .def("requests", &ServiceHandle::Requests)
      .def("counts", &ServiceHandle::Counts)
      .def("order", &ServiceHandle::Order)
      .def("order_odd", &ServiceHandle::OrderOdd)
      .def_property_readonly("url", [](const ServiceHandle& service) { return Text(service.Get().Url()); })
      .def_property_readonly("home_directory", [](const ServiceHandle& service) {
        return service.Get().HomeDirectory().string();
      });
}

}  // namespace scriptwells::python
