// The files that vorn writes, run for real: what they keep, and that failures leave them alone.
#include "Folders.h"
#include "RunVorn.h"

#include <gtest/gtest.h>

#include <array>
#include <map>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

using Testing::contentsOf;
using Testing::expectPrinted;
using Testing::Outcome;
using Testing::run;
using Testing::TemporaryFolder;

using Arguments = std::vector<std::string>;
using Contents = std::map<std::string, std::string>;

constexpr uid_t nobody = 65534;

Arguments picture( const std::string& path ) {
   return { "layout", "TcamActionTable", "--chip", "2", "--svg", path };
}

bool isPicture( const std::string& text ) {
   return text.starts_with( "<svg " ) && text.ends_with( "</svg>\n" );
}

std::string messageOf( const std::string& path, const std::string& reason ) {
   return "vorn: cannot write \"" + path + "\": " + reason + '\n';
}

// Runs vorn by a program that starts another one.
Outcome vornBy( const std::string& starter, Arguments arguments, const Arguments& ofVorn ) {
   arguments.push_back( VORN_BINARY );
   arguments.insert( arguments.end(), ofVorn.begin(), ofVorn.end() );
   return run( starter, arguments );
}

// Permissions count for root, too, once it has given up its capabilities.
Outcome vornWithoutPrivileges( const Arguments& arguments ) {
   return ::geteuid() == 0
             ? vornBy( "setpriv", { "--bounding-set=-all", "--inh-caps=-all", "--" }, arguments )
             : Testing::vorn( arguments );
}

// No file can grow beyond the size, as if the disk were full then.
Outcome vornWithFilesUpTo( std::size_t size, const Arguments& arguments ) {
   return vornBy( "prlimit", { "--fsize=" + std::to_string( size ), "--" }, arguments );
}

void write( const std::string& path, const std::string& text ) { std::ofstream( path ) << text; }

struct stat statusOf( const std::string& path ) {
   struct stat status {};
   EXPECT_EQ( ::lstat( path.c_str(), &status ), 0 ) << path;
   return status;
}

mode_t modeOf( const std::string& path ) { return statusOf( path ).st_mode & 07777U; }

Contents filesOf( const std::filesystem::path& folder ) {
   Contents files;
   for( const auto& file : std::filesystem::directory_iterator( folder ) ) {
      files[file.path().filename()] = file.is_directory() ? "" : contentsOf( file.path() );
   }
   return files;
}

// A page with its old text for each of those of docs/reference/.
Contents writeOldPages( const std::string& folder ) {
   Contents old;
   for( const auto& page : std::filesystem::directory_iterator( VORN_REFERENCE ) ) {
      const std::string name = page.path().filename();
      old[name] = "old " + name;
      write( folder + '/' + name, old[name] );
   }
   return old;
}

} // namespace

TEST( Files, modes ) {
   const TemporaryFolder folder;
   const std::string file = folder / "a.svg";
   const mode_t before = ::umask( 027 );
   expectPrinted( picture( file ), "" );
   ::umask( before );
   EXPECT_EQ( modeOf( file ), 0640u );
   for( const mode_t mode : { 0600u, 0666u, 0755u } ) {
      write( file, "old" );
      ::chmod( file.c_str(), mode );
      expectPrinted( picture( file ), "" );
      EXPECT_EQ( modeOf( file ), mode );
      EXPECT_TRUE( isPicture( contentsOf( file ) ) );
   }
   EXPECT_EQ( filesOf( folder.path() ).size(), 1u );
}

TEST( Files, owners ) {
   const TemporaryFolder folder;
   const std::string file = folder / "a.svg";
   write( file, "old" );
   if( ::chown( file.c_str(), nobody, nobody ) != 0 ) {
      GTEST_SKIP() << "only root can give a file away";
   }
   ::chmod( file.c_str(), 0640 );
   expectPrinted( picture( file ), "" );
   EXPECT_TRUE( isPicture( contentsOf( file ) ) );
   // And where it couldn't give away a new one.
   const std::string common = folder / "common.svg";
   write( common, std::string( 100000, 'x' ) );
   ::chmod( common.c_str(), 0666 );
   EXPECT_EQ( ::chown( common.c_str(), nobody, nobody ), 0 );
   EXPECT_EQ( vornWithoutPrivileges( picture( common ) ).err, "" );
   EXPECT_TRUE( isPicture( contentsOf( common ) ) );
   for( const auto& [path, mode] : { std::pair( file, 0640u ), std::pair( common, 0666u ) } ) {
      EXPECT_EQ( statusOf( path ).st_uid, nobody );
      EXPECT_EQ( statusOf( path ).st_gid, nobody );
      EXPECT_EQ( modeOf( path ), mode );
   }
}

TEST( Files, attributes ) {
   const TemporaryFolder folder;
   const std::string file = folder / "a.svg";
   write( file, "old" );
   if( ::setxattr( file.c_str(), "user.vorn", "kept", 4, 0 ) != 0 ) {
      GTEST_SKIP() << "files have no attributes here";
   }
   expectPrinted( picture( file ), "" );
   EXPECT_TRUE( isPicture( contentsOf( file ) ) );
   std::array<char, 4> value{};
   EXPECT_EQ( ::getxattr( file.c_str(), "user.vorn", value.data(), value.size() ), 4 );
}

TEST( Files, otherNames ) {
   const TemporaryFolder folder;
   const std::string file = folder / "a.svg";
   const std::string other = folder / "b.svg";
   write( file, std::string( 100000, 'x' ) );
   std::filesystem::create_hard_link( file, other );
   expectPrinted( picture( file ), "" );
   EXPECT_TRUE( isPicture( contentsOf( file ) ) );
   EXPECT_TRUE( isPicture( contentsOf( other ) ) );
   EXPECT_EQ( statusOf( file ).st_ino, statusOf( other ).st_ino );
}

TEST( Files, aLinkToNoFileYet ) {
   const TemporaryFolder folder;
   const std::string first = folder / "first.svg";
   std::filesystem::create_directory( folder / "inner" );
   std::filesystem::create_symlink( "inner/second.svg", first );
   std::filesystem::create_symlink( "../file.svg", folder / "inner/second.svg" );
   expectPrinted( picture( first ), "" );
   EXPECT_TRUE( std::filesystem::is_symlink( first ) );
   EXPECT_TRUE( std::filesystem::is_symlink( folder / "inner/second.svg" ) );
   EXPECT_TRUE( isPicture( contentsOf( folder / "file.svg" ) ) );

   const std::string loop = folder / "loop.svg";
   std::filesystem::create_symlink( "loop.svg", loop );
   EXPECT_EQ( Testing::vorn( picture( loop ) ).err,
              messageOf( loop, "Too many levels of symbolic links" ) );
   const std::string astray = folder / "astray.svg";
   std::filesystem::create_symlink( "none/a.svg", astray );
   EXPECT_EQ( Testing::vorn( picture( astray ) ).err,
              messageOf( astray, "No such file or directory" ) );
}

TEST( Files, aNameAsLongAsNamesGet ) {
   const TemporaryFolder folder;
   const std::string file = folder / ( std::string( 251, 'a' ) + ".svg" );
   for( int i = 0; i < 2; ++i ) {
      expectPrinted( picture( file ), "" );
      EXPECT_TRUE( isPicture( contentsOf( file ) ) );
   }
}

TEST( Files, aFolderThatTakesNoNewFiles ) {
   const TemporaryFolder folder;
   const std::string inner = folder / "inner";
   const std::string file = inner + "/a.svg";
   std::filesystem::create_directory( inner );
   write( file, std::string( 100000, 'x' ) );
   ::chmod( inner.c_str(), 0500 );
   const auto outcome = vornWithoutPrivileges( picture( file ) );
   EXPECT_EQ( outcome.err, "" );
   EXPECT_EQ( outcome.status, 0 );
   EXPECT_TRUE( isPicture( contentsOf( file ) ) );

   const auto refused = vornWithoutPrivileges( picture( inner + "/b.svg" ) );
   EXPECT_EQ( refused.err, messageOf( inner + "/b.svg", "Permission denied" ) );
   EXPECT_EQ( refused.status, 1 );
   ::chmod( file.c_str(), 0400 );
   EXPECT_EQ( vornWithoutPrivileges( picture( file ) ).err,
              messageOf( file, "Permission denied" ) );
   EXPECT_TRUE( isPicture( contentsOf( file ) ) );
   ::chmod( inner.c_str(), 0700 );
}

// A temporary file has a name that nobody can know before, not even by the process's number.
TEST( Files, aLinkPreparedForATemporaryFile ) {
   const TemporaryFolder folder;
   const std::string file = folder / "a.svg";
   const std::string precious = folder / "precious";
   write( precious, "precious" );
   Arguments arguments{ "-c", "ln -s precious \"$1.vorn$$\" && shift && exec \"$@\"", "sh", file };
   const auto outcome = vornBy( "sh", arguments, picture( file ) );
   EXPECT_EQ( outcome.err, "" );
   EXPECT_EQ( contentsOf( precious ), "precious" );
   EXPECT_TRUE( isPicture( contentsOf( file ) ) );
   EXPECT_FALSE( std::filesystem::is_symlink( file ) );
}

TEST( Files, aPipe ) {
   const TemporaryFolder folder;
   const std::string pipe = folder / "pipe";
   ASSERT_EQ( ::mkfifo( pipe.c_str(), 0600 ), 0 );
   const int reader = ::open( pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC );
   expectPrinted( picture( pipe ), "" );
   std::string text( 1 << 16, '\0' );
   const ssize_t count = ::read( reader, text.data(), text.size() );
   ::close( reader );
   text.resize( count > 0 ? static_cast<std::size_t>( count ) : 0 );
   EXPECT_TRUE( isPicture( text ) );
   EXPECT_TRUE( std::filesystem::is_fifo( pipe ) );
}

TEST( Files, standardOutputByItsName ) {
   const auto outcome = Testing::vorn( picture( "/dev/stdout" ) );
   EXPECT_EQ( outcome.err, "" );
   EXPECT_TRUE( isPicture( outcome.out ) );
   // What stands in the file before the picture, and what comes after it, stays.
   const TemporaryFolder folder;
   const std::string file = folder / "a";
   const std::string script = "exec > \"$0\"; echo before; \"$@\" && echo after";
   EXPECT_EQ( vornBy( "sh", { "-c", script, file }, picture( "/dev/stdout" ) ).err, "" );
   EXPECT_EQ( contentsOf( file ), "before\n" + outcome.out + "after\n" );
}

TEST( Files, aFailureLeavesWhatWasThere ) {
   const TemporaryFolder folder;
   const std::string file = folder / "a.svg";
   const std::string old( 700, 'x' );
   write( file, old );
   for( const bool hasOtherName : { false, true } ) {
      if( hasOtherName ) {
         std::filesystem::create_hard_link( file, folder / "b.svg" );
      }
      const auto before = filesOf( folder.path() );
      const auto outcome = vornWithFilesUpTo( 1000, picture( file ) );
      EXPECT_EQ( outcome.err, messageOf( file, "File too large" ) );
      EXPECT_EQ( outcome.status, 1 );
      EXPECT_EQ( filesOf( folder.path() ), before );
      EXPECT_EQ( before.at( "a.svg" ), old );
   }
   // Nor is there anything where nothing was.
   const auto before = filesOf( folder.path() );
   const std::string link = folder / "link.svg";
   std::filesystem::create_symlink( "none.svg", link );
   for( const std::string& fresh : { folder / "fresh.svg", link } ) {
      EXPECT_EQ( vornWithFilesUpTo( 1000, picture( fresh ) ).status, 1 );
   }
   std::filesystem::remove( link );
   EXPECT_EQ( filesOf( folder.path() ), before );
}

// IsemMgmtReq.md is the only page of more than 100000 bytes.
TEST( Files, pagesAreAllReplacedOrNone ) {
   const TemporaryFolder folder;
   const auto old = writeOldPages( folder.path() );
   const Arguments reference{ "reference", folder.path() };
   const std::string page = folder / "IsemMgmtReq.md";
   const auto expectFailure = [&]( const std::string& reason ) {
      const auto outcome = vornWithFilesUpTo( 100000, reference );
      EXPECT_EQ( outcome.err, messageOf( page, reason ) );
      EXPECT_EQ( outcome.status, 1 );
   };
   expectFailure( "File too large" );
   EXPECT_EQ( filesOf( folder.path() ), old );

   // One that is written in place fails when others have been replaced.
   const TemporaryFolder elsewhere;
   std::filesystem::create_hard_link( page, elsewhere / "IsemMgmtReq.md" );
   expectFailure( "File too large" );
   EXPECT_EQ( filesOf( folder.path() ), old );

   std::filesystem::remove( page );
   expectFailure( "File too large" );
   std::filesystem::create_directory( page );
   expectFailure( "Is a directory" );
   auto before = old;
   before["IsemMgmtReq.md"] = "";
   EXPECT_EQ( filesOf( folder.path() ), before );
}

TEST( Files, aFolderMadeForPagesThatFailGoesAgain ) {
   const TemporaryFolder folder;
   EXPECT_EQ( vornWithFilesUpTo( 100000, { "reference", folder / "new/reference/" } ).status, 1 );
   EXPECT_EQ( filesOf( folder.path() ), Contents() );
   std::filesystem::create_directory( folder / "there" );
   EXPECT_EQ( vornWithFilesUpTo( 100000, { "reference", folder / "there/new" } ).status, 1 );
   EXPECT_TRUE( std::filesystem::is_empty( folder / "there" ) );
   const auto outcome =
      Testing::vorn( { "reference", folder / "made/" + std::string( 300, 'a' ) } );
   EXPECT_TRUE( outcome.err.ends_with( "\": File name too long\n" ) ) << outcome.err;
   EXPECT_FALSE( std::filesystem::exists( folder / "made" ) );
}
