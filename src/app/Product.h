#pragma once

/// Names by which the product is known to its users and to the orchestrator.
namespace product {

/// The name shown to users, also the name of the settings folder.
constexpr char kName[] = "Veltaro";

/// The client version, as reported to the orchestrator, compared by the upgrade check and shown
/// in the windows.
constexpr char kVersion[] = VELTARO_VERSION;

/// The device model reported to the orchestrator; also the value of the request header "type".
constexpr char kModel[] = "linux";

} // namespace product
