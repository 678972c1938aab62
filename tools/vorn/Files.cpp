// Files that are written as a whole or not at all.
#include "Files.h"

#include "Io.h"
#include "Text.h"

#include <Vorn/Error.h>
#include <Vorn/Text.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <filesystem>
#include <memory>
#include <random>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace Vorn {

namespace {

[[noreturn]] void fail( const std::string& path, int reason ) {
   throw Error( "cannot write " + inQuotes( path ) + ": " + std::strerror( reason ) );
}

class Descriptor {
public:
   explicit Descriptor( int number = -1 ) : number_( number ) {}
   Descriptor( Descriptor&& other ) noexcept : number_( std::exchange( other.number_, -1 ) ) {}
   Descriptor& operator=( Descriptor&& other ) noexcept {
      std::swap( number_, other.number_ );
      return *this;
   }
   ~Descriptor() {
      if( isOpen() ) {
         ::close( number_ );
      }
   }

   bool isOpen() const { return number_ >= 0; }
   int number() const { return number_; }

private:
   int number_;
};

bool isSame( const struct stat& one, const struct stat& other ) {
   return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
}

// For example an access control list, which a new file would lack or replace.
bool hasAttributes( const Descriptor& file ) {
   return ::flistxattr( file.number(), nullptr, 0 ) > 0;
}

// A name that nobody can prepare a link under, however long the file's own name is.
std::string randomName() {
   std::random_device random;
   char name[32];
   std::snprintf( name, sizeof( name ), ".vorn-%08x%08x", random(), random() );
   return name;
}

// 0, or why the text could not be written.
int writeAtBeginning( const Descriptor& file, std::string_view text ) {
   if( ::lseek( file.number(), 0, SEEK_SET ) < 0 ) {
      return errno;
   }
   const int failure = writeAll( file.number(), text );
   return failure == 0 && ::fsync( file.number() ) != 0 ? errno : failure;
}

// The path without links, empty where there is none.
std::string realPath( const std::string& path ) {
   const std::unique_ptr<char, decltype( &std::free )> real( ::realpath( path.c_str(), nullptr ),
                                                             &std::free );
   return real ? real.get() : "";
}

// A file on its way to a new text: it is prepared, put in place and finished. One that goes before
// it is finished leaves what was there before.
class File {
public:
   File( const std::string& path, std::string_view text ) : path_( path ), text_( text ) {}
   ~File();
   File( const File& ) = delete;
   File& operator=( const File& ) = delete;

   // Does everything that lack of space or permission can make fail.
   void prepare();
   void put();
   void finish();

private:
   enum class State {
      untouched, // the name leads to what was there before
      made,      // to the new file, and to none before
      replaced,  // to the new file
      exchanged, // to the new file, and the temporary name to the one before
      inPlace,   // to the file that was there before, whose contents change
   };

   void open( int more );
   void findName( const std::filesystem::path& path );
   bool canBeReplaced() const;
   bool makeTemporary( mode_t mode );
   void removeTemporary();
   bool keepOwnerAndMode() const;
   void fillTemporary();
   void reserve();
   void putInPlace();

   const std::string& path_;
   const std::string_view text_;
   State state_ = State::untouched;
   bool isThere_ = false; // was there before
   Descriptor file_;      // that was there before, or has to be written in place
   struct stat status_ {};
   std::string created_; // its path if it has just been created
   std::string before_;  // what it has had where the text comes to stand
   Descriptor folder_;
   std::string name_; // in the folder
   Descriptor temporary_;
   std::string temporaryName_; // in the folder, empty where there is none
};

void File::prepare() {
   const std::filesystem::path path( path_ );
   struct stat status {};
   if( ::stat( path_.c_str(), &status ) == 0 ) {
      isThere_ = true;
      open( 0 );
      findName( realPath( path_ ) );
      if( canBeReplaced() && makeTemporary( 0600 ) ) {
         if( keepOwnerAndMode() ) {
            return fillTemporary();
         }
         removeTemporary();
      }
      return reserve();
   }
   if( errno != ENOENT ) {
      fail( path_, errno );
   }
   if( path.filename().empty() || ::lstat( path_.c_str(), &status ) == 0 ) {
      // The system follows the link; a file is created where it leads.
      open( O_CREAT );
      created_ = realPath( path_ );
      return reserve();
   }
   findName( path );
   if( !folder_.isOpen() || !makeTemporary( 0666 ) ) {
      fail( path_, errno );
   }
   fillTemporary();
}

void File::open( int more ) {
   more |= O_CLOEXEC | O_NOCTTY;
   file_ = Descriptor( ::open( path_.c_str(), O_RDWR | more, 0666 ) );
   if( !file_.isOpen() && errno == EACCES ) {
      file_ = Descriptor( ::open( path_.c_str(), O_WRONLY | more, 0666 ) );
   }
   if( !file_.isOpen() || ::fstat( file_.number(), &status_ ) != 0 ) {
      fail( path_, errno );
   }
}

void File::findName( const std::filesystem::path& path ) {
   const std::string folder = path.has_parent_path() ? path.parent_path() : ".";
   name_ = path.filename();
   folder_ = Descriptor( ::open( folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC ) );
}

// Whether a new file under the name can be all that this one is.
bool File::canBeReplaced() const {
   struct stat named {};
   return folder_.isOpen() && status_.st_nlink == 1 && !hasAttributes( file_ ) &&
          ::fstatat( folder_.number(), name_.c_str(), &named, AT_SYMLINK_NOFOLLOW ) == 0 &&
          isSame( named, status_ );
}

bool File::makeTemporary( mode_t mode ) {
   constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
   std::string name;
   do {
      name = randomName();
      temporary_ = Descriptor( ::openat( folder_.number(), name.c_str(), flags, mode ) );
   } while( !temporary_.isOpen() && errno == EEXIST );
   if( temporary_.isOpen() ) {
      temporaryName_ = name;
   }
   return temporary_.isOpen();
}

void File::removeTemporary() {
   if( !temporaryName_.empty() ) {
      ::unlinkat( folder_.number(), temporaryName_.c_str(), 0 );
      temporaryName_.clear();
   }
}

bool File::keepOwnerAndMode() const {
   const int file = temporary_.number();
   struct stat status {};
   if( ::fstat( file, &status ) != 0 || hasAttributes( temporary_ ) ) {
      return false;
   }
   const bool isOwned = status.st_uid == status_.st_uid && status.st_gid == status_.st_gid;
   return ( isOwned || ::fchown( file, status_.st_uid, status_.st_gid ) == 0 ) &&
          ::fchmod( file, status_.st_mode & 07777U ) == 0;
}

void File::fillTemporary() {
   if( const int failure = writeAtBeginning( temporary_, text_ ) ) {
      fail( path_, failure );
   }
   temporary_ = Descriptor();
   file_ = Descriptor();
}

// Sees to it that the file has the space to be written in place, and can be restored.
void File::reserve() {
   const auto size = static_cast<off_t>( text_.size() );
   if( ::fallocate( file_.number(), FALLOC_FL_KEEP_SIZE, 0, size ) != 0 &&
       ( errno == ENOSPC || errno == EDQUOT ) ) {
      fail( path_, errno );
   }
   before_.resize( static_cast<std::size_t>( std::min( size, status_.st_size ) ) );
   const ssize_t count = ::pread( file_.number(), before_.data(), before_.size(), 0 );
   before_.resize( count > 0 ? static_cast<std::size_t>( count ) : 0 );
}

void File::put() {
   if( temporaryName_.empty() ) {
      return putInPlace();
   }
   const int folder = folder_.number();
   const auto rename = [&]( unsigned flags ) {
      return ::renameat2( folder, temporaryName_.c_str(), folder, name_.c_str(), flags ) == 0;
   };
   if( isThere_ && rename( RENAME_EXCHANGE ) ) {
      state_ = State::exchanged;
   } else if( rename( 0 ) ) {
      state_ = isThere_ ? State::replaced : State::made;
   } else if( isThere_ ) {
      // Something is mounted there, say, or may only be renamed by its owner.
      removeTemporary();
      open( 0 );
      reserve();
      putInPlace();
   } else {
      fail( path_, errno );
   }
}

void File::putInPlace() {
   state_ = State::inPlace;
   if( const int failure = writeAtBeginning( file_, text_ ) ) {
      fail( path_, failure );
   }
}

void File::finish() {
   // The rest of a longer text is cut off last, as that can't be undone.
   if( state_ == State::inPlace &&
       ::ftruncate( file_.number(), static_cast<off_t>( text_.size() ) ) != 0 ) {
      fail( path_, errno );
   }
   state_ = State::replaced;
   removeTemporary();
}

File::~File() {
   switch( state_ ) {
   case State::untouched:
      removeTemporary();
      break;
   case State::made:
      ::unlinkat( folder_.number(), name_.c_str(), 0 );
      break;
   case State::replaced:
      return;
   case State::exchanged:
      ::renameat( folder_.number(), temporaryName_.c_str(), folder_.number(), name_.c_str() );
      break;
   case State::inPlace:
      writeAtBeginning( file_, before_ );
      break;
   }
   if( !created_.empty() ) {
      ::unlink( created_.c_str() );
   } else if( file_.isOpen() ) {
      // What has been reserved, or written, is too long.
      const int ignored = ::ftruncate( file_.number(), status_.st_size );
      static_cast<void>( ignored );
   }
}

// Whether the file is written to directly, and has been.
bool writtenAsStream( const FileText& file ) {
   struct stat status {};
   struct stat output {};
   if( ::stat( file.path.c_str(), &status ) != 0 ) {
      return false;
   }
   const bool isOutput = ::fstat( STDOUT_FILENO, &output ) == 0 && isSame( status, output );
   if( !isOutput && S_ISREG( status.st_mode ) ) {
      return false;
   }
   const Descriptor own( isOutput ? -1
                                  : ::open( file.path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY ) );
   if( !isOutput && !own.isOpen() ) {
      fail( file.path, errno );
   }
   if( const int failure = writeAll( isOutput ? STDOUT_FILENO : own.number(), file.text ) ) {
      fail( file.path, failure );
   }
   return true;
}

// Delays signals that end the program until the step is done.
class SignalsHeld {
public:
   SignalsHeld() {
      sigset_t signals;
      ::sigemptyset( &signals );
      for( const int signal : { SIGHUP, SIGINT, SIGTERM } ) {
         ::sigaddset( &signals, signal );
      }
      ::sigprocmask( SIG_BLOCK, &signals, &before_ );
   }
   ~SignalsHeld() { ::sigprocmask( SIG_SETMASK, &before_, nullptr ); }
   SignalsHeld( const SignalsHeld& ) = delete;
   SignalsHeld& operator=( const SignalsHeld& ) = delete;

private:
   sigset_t before_;
};

} // namespace

void writeFiles( std::span<const FileText> texts ) {
   std::vector<const FileText*> whole;
   for( const FileText& text : texts ) {
      if( !writtenAsStream( text ) ) {
         whole.push_back( &text );
      }
   }
   const SignalsHeld held;
   std::deque<File> files;
   for( const FileText* const text : whole ) {
      files.emplace_back( text->path, text->text ).prepare();
   }
   for( File& file : files ) {
      file.put();
   }
   for( File& file : files ) {
      file.finish();
   }
}

void writeFile( const std::string& path, std::string_view text ) {
   const FileText file{ path, text };
   writeFiles( { &file, 1 } );
}

} // namespace Vorn
