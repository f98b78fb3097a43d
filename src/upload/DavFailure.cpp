// SPDX-FileCopyrightText: The Maintenance LogBook authors
// SPDX-License-Identifier: MIT

#include "upload/DavFailure.h"

#include <curl/curl.h>

#include "upload/ContentStore.h"
#include "upload/ServerAddress.h"

namespace logbook {

namespace {

using Reach = DeliveryError::Reach;

// The words for a status: what stands before and behind "METHOD path (status)".
struct StatusWords {
  long status;
  Reach reach;
  const char* before;
  const char* behind;
};

constexpr StatusWords kStatusWords[] = {
    {403, Reach::kWholeServer, "The content server does not allow ", "."},
    {404, Reach::kThisSubmission,
     "The content server knows no such place: ", "; look at Url and Folder."},
    {405, Reach::kWholeServer, "The content server does not know ",
     "; set Url to a folder of a WebDAV server."},
    {409, Reach::kThisSubmission, "The folder above is missing at the content server: ",
     "; make it there, or look at Url and Folder."},
    // To a move that may not overwrite.
    {412, Reach::kThisSubmission, "The content server holds another file of the name: ", "."},
    {413, Reach::kThisSubmission, "The content server does not take files of this size: ", "."},
    {423, Reach::kThisSubmission, "Somebody has locked the place at the content server: ",
     "; it goes on when the lock is taken off."},
    {501, Reach::kWholeServer, "The content server does not know ",
     "; set Url to a folder of a WebDAV server."},
    {507, Reach::kThisSubmission, "The disk of the content server is full: ", "."},
};

bool IsCut(int curl_code) {
  switch (curl_code) {
    case CURLE_PARTIAL_FILE:
    case CURLE_GOT_NOTHING:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
    case CURLE_HTTP2:
    case CURLE_HTTP2_STREAM:
      return true;
    default:
      return false;
  }
}

bool IsOfCertificate(int curl_code) {
  switch (curl_code) {
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_ISSUER_ERROR:
      return true;
    default:
      return false;
  }
}

std::string TextOf(const DavRequest& request) {
  return request.method + " " + request.path;
}

}  // namespace

void FailToTransfer(const DavRequest& request, int curl_code, const std::string& detail,
                    bool connected) {
  if (IsOfCertificate(curl_code))
    throw DeliveryError(Reach::kWholeServer,
                        "The certificate of the content server cannot be trusted: " + detail);
  if (curl_code == CURLE_UNSUPPORTED_PROTOCOL || curl_code == CURLE_WEIRD_SERVER_REPLY)
    throw DeliveryError(Reach::kWholeServer,
                        "What answers at the address in Url is no web server: " + detail);
  if (connected && curl_code == CURLE_OPERATION_TIMEDOUT)
    throw DeliveryError(Reach::kThisSubmission, "The content server does not come to an end of " +
                                                    TextOf(request) + ": " + detail);
  // The library's word for a line of a head that is longer than it takes.
  if (connected && curl_code == CURLE_OUT_OF_MEMORY) FailWithoutEnd(request);
  if (connected && IsCut(curl_code))
    throw DeliveryError(Reach::kThisSubmission, "The content server broke off its answer to " +
                                                    TextOf(request) + ": " + detail);
  throw DeliveryError(Reach::kWholeServer, "The content server cannot be reached: " + detail);
}

void FailWithoutEnd(const DavRequest& request) {
  throw DeliveryError(Reach::kThisSubmission,
                      "The answer of the content server to " + TextOf(request) + " has no end.");
}

void FailWithStatus(const DavRequest& request, long status, const std::string& location) {
  const std::string number = " (" + std::to_string(status) + ")";
  if (status == 401)
    throw DeliveryError(Reach::kWholeServer,
                        "The content server does not accept user name and password" + number + ".");
  if (status >= 300 && status < 400)
    throw DeliveryError(Reach::kWholeServer,
                        "The content server refers to another address" + number +
                            ", where nothing is sent: " + AddressForTheEye(location) +
                            "; set Url to it if that is right.");
  for (const StatusWords& words : kStatusWords) {
    if (words.status == status)
      throw DeliveryError(words.reach, words.before + TextOf(request) + number + words.behind);
  }
  throw DeliveryError(status >= 500 ? Reach::kWholeServer : Reach::kThisSubmission,
                      "The content server failed to do " + TextOf(request) + number + ".");
}

}  // namespace logbook
